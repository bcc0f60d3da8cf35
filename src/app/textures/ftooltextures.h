// fToolTextures: the content of the Textures Box.
//
// The box lists textures as thumbnails: the pictures of AppFolder() + "/Textures" (bmp,
// png, jpg, jpeg, gif), sorted by name, and any picture the user adds with "Add...". A
// click on a thumbnail makes it the current texture: its pixels go to the host's
// `TextureBits`, which the brush's "Current stamp (Tiled)" kind and the fill's "Current
// stamp" kind paint with. At start the first texture of the list is current.
#pragma once

#include <QString>
#include <QWidget>

class QListWidget;
class QToolButton;

namespace ostrivex {

class DocumentHost;

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

    QListWidget* list() const { return list_; }
    QToolButton* addButton() const { return add_; }

  private:
    void askForFile();

    DocumentHost& host_;
    QListWidget* list_ = nullptr;
    QToolButton* add_ = nullptr;
    int current_ = -1;
};

} // namespace ostrivex
