// ToolBox: one of the seven floating tool boxes of the main window.
//
// A box is a top-level tool window owned by fMain, so it stays above the main window. It
// draws its own title strip (caption, minimise and close buttons) instead of relying on
// the window manager's, so that "minimised" means the same everywhere: the box shrinks to
// its title strip. Its place comes from the settings record, in twips (15 to a pixel),
// measured from a reference point the owner gives (the top-left corner of the main
// window's document area), so that the boxes' places keep clear of the menu, tool bar and
// tool panel rows whatever their height. The stored width and height are the whole box,
// title strip included.
#pragma once

#include "app/settings/settings.h"

#include <QWidget>

#include <functional>

class QLabel;
class QSizeGrip;
class QToolButton;
class QVBoxLayout;

namespace ostrivex {

// Where a box keeps its state in the settings record. Boxes of a fixed size have no
// width and height fields (nullptr) and use `fixedSize` instead.
struct BoxFields {
    bool16 SettingsRecord::*visible;
    std::int16_t SettingsRecord::*left;
    std::int16_t SettingsRecord::*top;
    std::int16_t SettingsRecord::*width;  // nullptr for a fixed-size box
    std::int16_t SettingsRecord::*height; // nullptr for a fixed-size box
    bool16 SettingsRecord::*minimized;
    QSize fixedSize; // pixels, for a fixed-size box
};

class ToolBox : public QWidget {
    Q_OBJECT
  public:
    // The height of the title strip, which is all that a minimised box shows.
    static constexpr int TitleHeight = 20;

    ToolBox(const QString& formName, const QString& caption, const BoxFields& fields,
            QWidget* owner);

    const BoxFields& fields() const { return fields_; }
    QString caption() const;
    // The area under the title strip; the box's own controls go into it.
    QWidget* content() const { return content_; }
    // Replaces the content area by `widget` (the box takes it over).
    void setContent(QWidget* widget);

    // The screen point the stored left and top are measured from; without one, the
    // screen's origin.
    void setOrigin(std::function<QPoint()> origin) { origin_ = std::move(origin); }
    QPoint origin() const { return origin_ ? origin_() : QPoint(0, 0); }

    // Moves the box to its stored position; then either shrinks it to the title strip
    // (minimised flag set) or gives it its stored size. Does not show it.
    void PlaceFromSettings();
    // The box's minimise action: true shrinks it to the title strip, false restores the
    // stored size. The minimised flag follows.
    void SetMinimized(bool on);
    bool IsMinimized() const { return minimized_; }
    // The box's size in pixels when not minimised.
    QSize StoredSize() const;

  signals:
    // The close button was pressed (the box is already hidden).
    void closeRequested(ToolBox* box);

  protected:
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void closeEvent(QCloseEvent* e) override;
    void paintEvent(QPaintEvent* e) override;

  private:
    void storePosition();

    BoxFields fields_;
    std::function<QPoint()> origin_;
    QLabel* title_ = nullptr;
    QToolButton* minButton_ = nullptr;
    QToolButton* closeButton_ = nullptr;
    QWidget* content_ = nullptr;
    QSizeGrip* grip_ = nullptr;
    QVBoxLayout* layout_ = nullptr;
    bool minimized_ = false;
    bool placing_ = false;
    bool dragging_ = false;
    QPoint dragOffset_;
};

} // namespace ostrivex
