// fProperties: the Image Properties dialog.
#include "imagefile/fProperties.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace ostrivex {

fProperties::fProperties(const std::string& path, const std::string& documentName,
                         int documentWidth, int documentHeight, QWidget* parent)
    : QDialog(parent), texts_(ImageProperties(path, documentName, documentWidth, documentHeight)) {
    setWindowTitle("Image Properties");
    auto* form = new QFormLayout;
    auto field = [this, form](const char* objectName, const char* caption,
                              const std::string& value) {
        auto* label = new QLabel(QString::fromStdString(value), this);
        label->setObjectName(objectName);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        form->addRow(new QLabel(caption, this), label);
        return label;
    };
    PName = field("PName", "Name :", texts_.name);
    pType = field("pType", "Type :", texts_.type);
    PSize = field("PSize", "Size :", texts_.size);
    PWidth = field("PWidth", "Width :", texts_.width);
    PHeight = field("PHeight", "Height :", texts_.height);
    PDepth = field("PDepth", "Color Depth :", texts_.depth);
    PBits = field("PBits", "Bits Per Pixel :", texts_.bits);
    PResolution = field("PResolution", "Resolution :", texts_.resolution);
    PParent = field("PParent", "Parent Folder :", texts_.parent);
    PDate = field("PDate", "Date Created :", texts_.date);
    PAttribute = field("PAttribute", "Attribute :", texts_.attribute);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &fProperties::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

} // namespace ostrivex
