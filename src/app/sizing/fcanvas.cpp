#include "app/sizing/fcanvas.h"

#include "app/sizing/sizefields.h"
#include "app/sizing/sizingwidgets.h"
#include "pixel/vbmath.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivex {

namespace {
// The grey area the canvas is centred in.
class PreviewArea : public QWidget {
  public:
    explicit PreviewArea(QWidget* parent) : QWidget(parent) {
        setFixedSize(fCanvas::kPreviewSide + 16, fCanvas::kPreviewSide + 16);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), QColor(128, 128, 128));
    }
};

// The new canvas: black, as a blank canvas is, with the picture on it.
class CanvasArea : public QWidget {
  public:
    using QWidget::QWidget;

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), Qt::black);
    }
};
} // namespace

// --- The picture ----------------------------------------------------------------------------

CanvasPicture::CanvasPicture(const QImage& picture, QWidget* parent)
    : QWidget(parent), picture_(picture) {
    setObjectName("iImg");
    setCursor(Qt::SizeAllCursor);
}

void CanvasPicture::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::SmoothPixmapTransform, picture_.width() > width());
    p.drawImage(rect(), picture_);
    // A frame, so that a dark picture still shows on the black canvas.
    p.setPen(QPen(QColor(255, 200, 0), 1, Qt::DashLine));
    p.drawRect(rect().adjusted(0, 0, -1, -1));
}

void CanvasPicture::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    dragging_ = true;
    grab_ = event->position().toPoint();
}

void CanvasPicture::mouseMoveEvent(QMouseEvent* event) {
    if (!dragging_) return;
    emit dragged(mapToParent(event->position().toPoint()) - grab_);
}

void CanvasPicture::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !dragging_) return;
    dragging_ = false;
    emit dragged(mapToParent(event->position().toPoint()) - grab_);
}

// --- The dialog -----------------------------------------------------------------------------

fCanvas::fCanvas(const QImage& picture, QWidget* parent)
    : QDialog(parent), w_(picture.width()), h_(picture.height()) {
    setObjectName("fCanvas");
    setWindowTitle("Canvas size");
    // The picture is only ever shown at most the preview's size (unless the canvas is
    // smaller than the image): keep a copy of that size, not the whole image.
    picture_ = picture.width() > 2 * kPreviewSide || picture.height() > 2 * kPreviewSide
                   ? picture.scaled(2 * kPreviewSide, 2 * kPreviewSide, Qt::KeepAspectRatio,
                                    Qt::SmoothTransformation)
                   : picture;

    auto* current =
        new QLabel(QStringLiteral("Image size: %1 x %2 pixels").arg(w_).arg(h_), this);
    txtW = SizeField(this, "txtW", w_);
    txtH = SizeField(this, "txtH", h_);
    chkKeepProportions = new QCheckBox("&Proportions", this);
    chkKeepProportions->setObjectName("chkKeepProportions");
    chkKeepProportions->setToolTip("Place the image at multiples of its own size");
    cmdCenter = new QPushButton("C&enter", this);
    cmdCenter->setObjectName("cmdCenter");
    lblPosition = new QLabel(this);
    lblPosition->setObjectName("lblPosition");

    auto* area = new PreviewArea(this);
    iCnv = new CanvasArea(area);
    iCnv->setObjectName("iCnv");
    iImg = new CanvasPicture(picture_, iCnv);

    QGridLayout* fields = SizeFieldRows(this, txtW, txtH);

    auto* left = new QVBoxLayout;
    left->addWidget(current);
    left->addLayout(fields);
    left->addWidget(chkKeepProportions);
    left->addWidget(cmdCenter, 0, Qt::AlignLeft);
    left->addWidget(lblPosition);
    left->addWidget(new QLabel("Drag the image to place it\non the new canvas.", this));
    left->addStretch(1);

    QHBoxLayout* buttons = OkCancelRow(this, cmdOK, cmdCancel);

    auto* body = new QHBoxLayout;
    body->addLayout(left);
    body->addSpacing(8);
    body->addWidget(area, 0, Qt::AlignTop);
    auto* top = new QVBoxLayout(this);
    top->addLayout(body);
    top->addLayout(buttons);
    top->setSizeConstraint(QLayout::SetFixedSize);

    connect(txtW, &QLineEdit::textChanged, this, [this] { sizeChanged(); });
    connect(txtH, &QLineEdit::textChanged, this, [this] { sizeChanged(); });
    connect(iImg, &CanvasPicture::dragged, this, [this](QPoint p) { DragPictureTo(p); });
    connect(cmdCenter, &QPushButton::clicked, this, [this] { CenterPicture(); });
    connect(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    sizeChanged();
}

// A field that is not a usable size yet (empty, or being typed) leaves the preview as it
// was; OK checks the fields again.
void fCanvas::sizeChanged() {
    bool okW = false, okH = false;
    const int32_t cw = txtW->text().toInt(&okW), ch = txtH->text().toInt(&okH);
    if (!okW || !okH || cw < 1 || ch < 1 || cw > kMaximumSide || ch > kMaximumSide) return;
    canvasW_ = cw;
    canvasH_ = ch;
    scale_ = double(kPreviewSide) / std::max(cw, ch);
    const int32_t pw = std::max(1, vbRound(cw * scale_)), ph = std::max(1, vbRound(ch * scale_));
    QWidget* area = iCnv->parentWidget();
    iCnv->setGeometry((area->width() - pw) / 2, (area->height() - ph) / 2, pw, ph);
    iImg->resize(std::max(1, vbRound(w_ * scale_)), std::max(1, vbRound(h_ * scale_)));
    CenterPicture();
}

void fCanvas::CenterPicture() {
    // Integer halving towards zero, as `\` does.
    left_ = (canvasW_ - w_) / 2;
    top_ = (canvasH_ - h_) / 2;
    placePicture();
}

void fCanvas::DragPictureTo(QPoint thumb) {
    if (w_ < 1 || h_ < 1) return;
    if (chkKeepProportions->isChecked()) {
        // Multiples k of the picture's own size; k from 0 up to the last that still starts
        // on the canvas.
        const int32_t kx = std::clamp(vbRound(double(thumb.x()) / iImg->width()), 0,
                                      (canvasW_ - 1) / w_);
        const int32_t ky = std::clamp(vbRound(double(thumb.y()) / iImg->height()), 0,
                                      (canvasH_ - 1) / h_);
        left_ = kx * w_;
        top_ = ky * h_;
    } else {
        left_ = std::clamp(vbRound(thumb.x() / scale_), -(w_ - 1), canvasW_ - 1);
        top_ = std::clamp(vbRound(thumb.y() / scale_), -(h_ - 1), canvasH_ - 1);
    }
    placePicture();
}

void fCanvas::placePicture() {
    iImg->move(vbRound(left_ * scale_), vbRound(top_ * scale_));
    lblPosition->setText(QStringLiteral("Position: %1, %2").arg(left_).arg(top_));
}

// A size that passes the check is one the preview has taken: the offsets belong to it.
void fCanvas::cmdOK_Click() {
    if (CheckSizeFields(this, txtW->text(), txtH->text(), newW_, newH_)) accept();
}

} // namespace ostrivex
