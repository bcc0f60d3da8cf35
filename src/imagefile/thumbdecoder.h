// Thumbnails of image files, decoded away from the editor.
//
// A `ThumbnailDecoder` keeps one helper program (`ostrivex-devil serve <budget>`) running and hands
// it one file at a time: the same decoders as File > Open, in a process of their own, so a
// hostile file can crash or hang only the helper. The helper decodes a JPEG at a reduced
// scale where libjpeg can, shrinks the picture to the largest side asked for and hands it
// back as a small BMP work file. A crash, a hang past DevilTimeLimit() or a cancel kills
// the helper; the next file starts a fresh one.
//
// One decoder serves one thread at a time; threads that decode side by side each hold
// their own decoder (and so their own helper).
#pragma once

#include <QImage>
#include <QSize>

#include <functional>
#include <string>
#include <sys/types.h>

namespace ostrivex {

// The helper's route for a thumbnail of `path`: the loader File > Open would use for the
// extension (a way of helper/protocol.h: "fi:<FreeImage format>", "devil", "bmp", "sgi"
// ..., or "emf"), a JPEG going through FreeImage for its scaled decode; "" when the open
// path has none (cur, olf, an unknown extension, a Koala or PhotoCD file of the wrong size,
// anything but a regular file).
std::string ThumbnailRoute(const std::string& path, const std::string& extension);

// An EMF file's own size (its frame at 96 dots per inch); invalid without an EMF header.
QSize EmfPictureSize(const std::string& path);

struct ThumbnailPicture {
    QImage picture;  // Format_RGB32, its larger side at most the side asked for
    int width = 0;   // the file's own picture size
    int height = 0;
};

class ThumbnailDecoder {
  public:
    ThumbnailDecoder();
    ~ThumbnailDecoder();
    ThumbnailDecoder(const ThumbnailDecoder&) = delete;
    ThumbnailDecoder& operator=(const ThumbnailDecoder&) = delete;

    // Decodes `path` (bytes as the file system has them) into a picture whose larger side
    // is at most `largestSide`; a smaller picture keeps its size. `cancelled` is asked
    // every few milliseconds while the helper works; true kills the helper. False for a
    // file no loader takes, a failed decode, a time-out or a cancel.
    bool Decode(const std::string& path, const std::string& extension, int largestSide,
                ThumbnailPicture& out, const std::function<bool()>& cancelled = {});

    // How many helpers this decoder has started so far.
    int HelperStarts() const { return starts_; }

  private:
    bool start();
    void stop(bool kill);
    bool request(const std::string& message);
    // The helper's one-line answer ("" on a crash, a time-out or a cancel).
    std::string awaitAnswer(const std::function<bool()>& cancelled);
    bool readPicture(const std::string& route, const std::string& path, int largestSide,
                     ThumbnailPicture& out);

    pid_t pid_ = -1;
    int socket_ = -1;
    std::string work_; // the BMP (or SVG) work file of this decoder
    int starts_ = 0;
};

} // namespace ostrivex
