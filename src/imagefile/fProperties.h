// fProperties, "Image Properties": facts about the active document's file.
#pragma once

#include "imagefile/imageproperties.h"

#include <QDialog>

class QLabel;

namespace ostrivex {

class fProperties : public QDialog {
    Q_OBJECT
  public:
    // `path` is the document's file ("" for a document never saved); the name and size
    // stand in for a document without a file.
    fProperties(const std::string& path, const std::string& documentName, int documentWidth,
                int documentHeight, QWidget* parent = nullptr);

    const ImagePropertiesText& texts() const { return texts_; }

    // The value fields, by the names the program gives them.
    QLabel* PName = nullptr;
    QLabel* pType = nullptr;
    QLabel* PSize = nullptr;
    QLabel* PWidth = nullptr;
    QLabel* PHeight = nullptr;
    QLabel* PDepth = nullptr;
    QLabel* PBits = nullptr;
    QLabel* PResolution = nullptr;
    QLabel* PParent = nullptr;
    QLabel* PDate = nullptr;
    QLabel* PAttribute = nullptr;

  private:
    ImagePropertiesText texts_;
};

} // namespace ostrivex
