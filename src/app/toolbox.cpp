#include "app/toolbox.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QSizeGrip>
#include <QToolButton>
#include <QVBoxLayout>

namespace ostrivex {

ToolBox::ToolBox(const QString& formName, const QString& caption, const BoxFields& fields,
                 QWidget* owner)
    : QWidget(owner, Qt::Tool | Qt::FramelessWindowHint), fields_(fields) {
    setObjectName(formName);
    setWindowTitle(caption);
    setAttribute(Qt::WA_DeleteOnClose, false);

    auto* strip = new QWidget(this);
    strip->setObjectName("TitleStrip");
    strip->setFixedHeight(TitleHeight);
    strip->setAutoFillBackground(true);
    QPalette pal = strip->palette();
    pal.setColor(QPalette::Window, palette().color(QPalette::Highlight));
    pal.setColor(QPalette::WindowText, palette().color(QPalette::HighlightedText));
    strip->setPalette(pal);
    // The strip passes its mouse events to the box, which drags itself.
    strip->setAttribute(Qt::WA_TransparentForMouseEvents, false);

    title_ = new QLabel(caption, strip);
    title_->setAttribute(Qt::WA_TransparentForMouseEvents);
    minButton_ = new QToolButton(strip);
    minButton_->setObjectName("MinimizeButton");
    minButton_->setText("_");
    minButton_->setAutoRaise(true);
    minButton_->setFixedSize(TitleHeight - 2, TitleHeight - 2);
    closeButton_ = new QToolButton(strip);
    closeButton_->setObjectName("CloseButton");
    closeButton_->setText("x");
    closeButton_->setAutoRaise(true);
    closeButton_->setFixedSize(TitleHeight - 2, TitleHeight - 2);
    // The title strip's buttons answer the mouse only: a box's window hands its keyboard
    // focus to its first focusable child when it is activated, and a space meant for the
    // canvas would then minimise or close the box.
    minButton_->setFocusPolicy(Qt::NoFocus);
    closeButton_->setFocusPolicy(Qt::NoFocus);
    auto* row = new QHBoxLayout(strip);
    row->setContentsMargins(4, 0, 1, 0);
    row->setSpacing(1);
    row->addWidget(title_, 1);
    row->addWidget(minButton_);
    row->addWidget(closeButton_);

    content_ = new QWidget(this);
    content_->setObjectName("Content");

    layout_ = new QVBoxLayout(this);
    layout_->setContentsMargins(1, 1, 1, 1);
    layout_->setSpacing(0);
    layout_->addWidget(strip);
    layout_->addWidget(content_, 1);

    const bool resizable = fields_.width != nullptr;
    if (resizable) {
        grip_ = new QSizeGrip(this);
        layout_->addWidget(grip_, 0, Qt::AlignBottom | Qt::AlignRight);
    }

    connect(minButton_, &QToolButton::clicked, this, [this] { SetMinimized(!minimized_); });
    connect(closeButton_, &QToolButton::clicked, this, [this] {
        hide();
        emit closeRequested(this);
    });
}

QString ToolBox::caption() const {
    return title_->text();
}

void ToolBox::setContent(QWidget* widget) {
    layout_->replaceWidget(content_, widget);
    delete content_;
    content_ = widget;
    content_->setVisible(!minimized_);
}

QSize ToolBox::StoredSize() const {
    if (!fields_.width) return fields_.fixedSize;
    return {TwipsToPixels(Settings.*fields_.width), TwipsToPixels(Settings.*fields_.height)};
}

void ToolBox::PlaceFromSettings() {
    placing_ = true;
    move(origin() + QPoint(TwipsToPixels(Settings.*fields_.left), TwipsToPixels(Settings.*fields_.top)));
    placing_ = false;
    SetMinimized(IsTrue(Settings.*fields_.minimized));
}

void ToolBox::SetMinimized(bool on) {
    minimized_ = on;
    Settings.*fields_.minimized = Bool16(on);
    content_->setVisible(!on);
    if (grip_) grip_->setVisible(!on);
    placing_ = true;
    const QSize full = StoredSize();
    if (on) {
        setMinimumSize(0, 0);
        setFixedSize(full.width(), TitleHeight + 2);
    } else if (!fields_.width) {
        setFixedSize(full);
    } else {
        setMinimumSize(TitleHeight * 4, TitleHeight * 3);
        setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        resize(full);
    }
    placing_ = false;
}

void ToolBox::storePosition() {
    // Only a real change is written back, so that a pixel position that maps to the
    // stored twips leaves the stored value exactly as it was.
    const QPoint at = pos() - origin();
    if (TwipsToPixels(Settings.*fields_.left) != at.x())
        Settings.*fields_.left = PixelsToTwips(at.x());
    if (TwipsToPixels(Settings.*fields_.top) != at.y())
        Settings.*fields_.top = PixelsToTwips(at.y());
}

void ToolBox::mousePressEvent(QMouseEvent* e) {
    if (e->button() == Qt::LeftButton && e->position().y() < TitleHeight + 1) {
        dragging_ = true;
        dragOffset_ = e->globalPosition().toPoint() - pos();
    }
}

void ToolBox::mouseMoveEvent(QMouseEvent* e) {
    if (dragging_) move(e->globalPosition().toPoint() - dragOffset_);
}

void ToolBox::mouseReleaseEvent(QMouseEvent* e) {
    if (!dragging_) return;
    dragging_ = false;
    storePosition();
}

void ToolBox::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    // A resize by the user's size grip is kept as the box's stored size.
    if (placing_ || minimized_ || !fields_.width || !isVisible()) return;
    if (TwipsToPixels(Settings.*fields_.width) != width())
        Settings.*fields_.width = PixelsToTwips(width());
    if (TwipsToPixels(Settings.*fields_.height) != height())
        Settings.*fields_.height = PixelsToTwips(height());
}

void ToolBox::closeEvent(QCloseEvent* e) {
    // A close from outside (the window manager) acts as the close button.
    e->ignore();
    hide();
    emit closeRequested(this);
}

void ToolBox::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setPen(palette().color(QPalette::Dark));
    p.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace ostrivex
