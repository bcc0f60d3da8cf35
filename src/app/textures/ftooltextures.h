// fToolTextures: the content of the Textures Box.
//
// The box lists textures as thumbnails: the pictures of AppFolder() + "/Textures" (bmp,
// png, jpg, jpeg, gif), sorted by name, any picture the user adds with "Add...", and
// textures made from a line of text with "Text..." (the text in the foreground colour on
// the second colour of the Color Box, bold, with a margin of 6 pixels around it). A
// click on a thumbnail makes it the current texture: its pixels go to the host's
// `TextureBits`, which the brush's "Current stamp (Tiled)" kind and the fill's "Current
// stamp" kind paint with. At start the first texture of the list is current.
#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

#include <functional>

class QListWidget;
class QToolButton;

namespace ostrivex {

class DocumentHost;

// The picture of a text texture: `text` in `ink` on `paper` (0x00BBGGRR), bold, with a
// margin of 6 pixels; a null image for an empty text.
QImage TextTexture(const QString& text, int32_t ink, int32_t paper);

// The patterns of the texture files.
inline constexpr const char* kTexturePattern = "*.bmp;*.png;*.jpg;*.jpeg;*.gif";

class fToolTextures : public QWidget {
    Q_OBJECT
  public:
    explicit fToolTextures(DocumentHost& host, QWidget* parent = nullptr);

    // Lists the textures of `folder` (a missing folder lists none) and makes the first one
    // current; with no texture `TextureBits` is left as it is.
    void FillTextures(const QString& folder);
    // Makes the texture of list row `row` current; false (and nothing changes) if its
    // picture cannot be read.
    bool ChooseTexture(int row);
    // Adds the picture of `path` to the list and makes it current; false if it cannot be
    // read (the list stays as it was).
    bool AddTextureFile(const QString& path);
    QString CurrentTextureFile() const;
    // Adds a texture drawn from `text` and makes it current; false for an empty text.
    bool AddTextTexture(const QString& text);

    // Asks for the text of a text texture ("" when cancelled); tests replace it.
    static std::function<QString(QWidget* parent)> AskText;

    QListWidget* list() const { return list_; }
    QToolButton* addButton() const { return add_; }
    QToolButton* textButton() const { return text_; }

  private:
    void askForFile();
    void addImage(const QImage& picture, const QString& tip, const QString& path);

    DocumentHost& host_;
    QListWidget* list_ = nullptr;
    QToolButton* add_ = nullptr;
    QToolButton* text_ = nullptr;
    int current_ = -1;
};

} // namespace ostrivex
