// What the Image Properties dialog shows about a file, worked out without widgets.
#pragma once

#include <cstdint>
#include <string>

namespace ostrivex {

// The field texts of `fProperties`, in the dialog's order. Empty where nothing is known.
struct ImagePropertiesText {
    std::string name;       // PName: the file's name
    std::string type;       // pType: the kind of file, from its extension
    std::string size;       // PSize: "<n> KB"
    std::string width;      // PWidth
    std::string height;     // PHeight
    std::string depth;      // PDepth: the colour count text
    std::string bits;       // PBits: bits per pixel
    std::string resolution; // PResolution: "<x> x <y>" in dots per inch
    std::string parent;     // PParent: the folder holding the file
    std::string date;       // PDate: "yyyy-MM-dd hh:mm:ss", local time
    std::string attribute;  // PAttribute
};

// Fills the texts for the file at `path` (the active document's file). The picture is
// decoded by the loader of its extension to learn its own size, depth and resolution.
// With an empty or missing path only the fields that need no
// file are filled: `documentName`, and the document's own width and height.
ImagePropertiesText ImageProperties(const std::string& path, const std::string& documentName,
                                    int documentWidth, int documentHeight);

// The colour count text of a depth: "Black & White" for 1 ... "4294967296 Colors (High
// Color)" for 32; "" for a depth outside the list.
std::string DepthText(int bitsPerPixel);
// File attribute texts by the attribute value (read-only 1, hidden 2, system 4, archive 32);
// "" for a combination without a text.
std::string AttributeText(int attributes);
// The plain-text kind of file for an extension of the type table ("" if not in it).
std::string FileTypeText(const std::string& extension);
// The file length in kilobytes, rounded to nearest (ties to even), with " KB".
std::string SizeText(uint64_t bytes);

} // namespace ostrivex
