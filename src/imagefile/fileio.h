// Files as the image code opens and writes them (internal to the image file code).
#pragma once

#include "pixel/bits.h"

#include <cstdint>
#include <cstdio>
#include <string>

namespace ostrivex {

// A picture file opened for reading. Only regular files open: a FIFO, a device or a
// folder is refused at once (opened without waiting, so a FIFO with no writer cannot
// hang the program), as is a file that cannot be read.
class InputFile {
  public:
    explicit InputFile(const std::string& path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    bool ok() const { return fd_ >= 0; }
    int fd() const { return fd_; }
    uint64_t size() const { return size_; }
    // A stdio stream over the file from its start (its own descriptor), or null. The
    // caller closes it.
    std::FILE* stream() const;

  private:
    int fd_ = -1;
    uint64_t size_ = 0;
};

// A file written in full before it takes the target's name: the bytes go to a file with
// no name in the target's folder, which replaces the target only at `commit`. A save that
// fails, or a program that dies on the way, leaves the old file as it was and no stray
// file behind (where the file system cannot make nameless files, a hidden name beside the
// target is used and removed on failure).
class OutputFile {
  public:
    explicit OutputFile(const std::string& target);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    bool ok() const { return fd_ >= 0; }
    int fd() const { return fd_; }
    // A stdio stream over the file (its own descriptor), or null. The caller closes it and
    // checks that close.
    std::FILE* stream() const;
    // Gives the written file the target's name (keeping an old file's permissions).
    bool commit();

  private:
    std::string target_;
    std::string named_; // the fallback's hidden name, if used
    int fd_ = -1;
};

// An anonymous file in memory (memfd), or -1.
int MemoryFile(const char* name);

// Madvises the buffer's pages to be backed by large pages: a fresh 96 MB buffer then
// faults in at a fifth of the cost. Harmless where the system offers none.
void AdviseLargePages(Bits& bits);

} // namespace ostrivex
