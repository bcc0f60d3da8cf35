#include "utilities/overlay/foverlay.h"

#include "document/fimage.h"
#include "document/host.h"
#include "pixel/vbmath.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivex {

namespace {

QScrollBar* bar(QWidget* parent, int max) {
    auto* b = new QScrollBar(Qt::Horizontal, parent);
    b->setRange(0, std::max(0, max));
    b->setMinimumWidth(160);
    return b;
}

QImage toImage(const Bits& bits) {
    QImage img(bits.width(), bits.height(), QImage::Format_RGB32);
    for (int y = 0; y < bits.height(); ++y) {
        const uint8_t* s = bits.row(y);
        auto* d = reinterpret_cast<QRgb*>(img.scanLine(y));
        for (int x = 0; x < bits.width(); ++x, s += 4) d[x] = qRgb(s[2], s[1], s[0]);
    }
    return img;
}

int scaled(int v, double scale) {
    return std::max(1, vbRound(v * scale));
}

} // namespace

fOverlay::fOverlay(fImage& destination, const std::vector<fImage*>& documents, QWidget* parent)
    : QDialog(parent), dest_(destination) {
    setObjectName(QStringLiteral("fOverlay"));
    setWindowTitle(QStringLiteral("Overlay image"));

    cbOverlay = new QComboBox(this);
    cbOverlay->setObjectName(QStringLiteral("cbOverlay"));
    for (fImage* doc : documents) {
        if (!doc || doc == &destination || !doc->PictureExists()) continue;
        sources_.push_back(doc);
        cbOverlay->addItem(doc->Caption());
    }
    const int w = destination.PictureWidth(), h = destination.PictureHeight();
    sbXOffset = bar(this, w);
    sbYOffset = bar(this, h);
    sbTransparency = bar(this, 100);
    lblXOffset = new QLabel(this);
    lblYOffset = new QLabel(this);
    lblTransparency = new QLabel(this);
    chkTiled = new QCheckBox(QStringLiteral("&Tiled"), this);
    chkMaskColor = new QCheckBox(QStringLiteral("&Mask color"), this);
    lblMaskColor = new QLabel(this);
    lblMaskColor->setObjectName(QStringLiteral("lblMaskColor"));
    lblMaskColor->setFixedSize(32, 18);
    lblMaskColor->setFrameShape(QFrame::Box);
    lblMaskColor->setAutoFillBackground(true);
    chkCreateNew = new QCheckBox(QStringLiteral("Create &new image"), this);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    iSrc = new QLabel(this);
    iSrc->setObjectName(QStringLiteral("iSrc"));
    iSrc->setFixedSize(kPreviewSide, kPreviewSide);
    iSrc->setFrameShape(QFrame::NoFrame);
    iSrc->setCursor(Qt::CrossCursor);
    iSrc->installEventFilter(this);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(QStringLiteral("Overlay"), this), 0, 0);
    grid->addWidget(cbOverlay, 0, 1, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("Left offset"), this), 1, 0);
    grid->addWidget(sbXOffset, 1, 1);
    grid->addWidget(lblXOffset, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("Top offset"), this), 2, 0);
    grid->addWidget(sbYOffset, 2, 1);
    grid->addWidget(lblYOffset, 2, 2);
    grid->addWidget(new QLabel(QStringLiteral("Transparency"), this), 3, 0);
    grid->addWidget(sbTransparency, 3, 1);
    grid->addWidget(lblTransparency, 3, 2);
    grid->addWidget(chkTiled, 4, 0, 1, 3);
    auto* mask = new QHBoxLayout;
    mask->addWidget(chkMaskColor);
    mask->addWidget(lblMaskColor);
    mask->addStretch();
    grid->addLayout(mask, 5, 0, 1, 3);
    grid->addWidget(chkCreateNew, 6, 0, 1, 3);
    auto* top = new QHBoxLayout;
    top->addLayout(grid);
    top->addWidget(iSrc, 0, Qt::AlignTop);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(buttons);

    connect(cbOverlay, &QComboBox::currentIndexChanged, this, &fOverlay::sourceChanged);
    for (QScrollBar* b : {sbXOffset, sbYOffset, sbTransparency})
        connect(b, &QScrollBar::valueChanged, this, &fOverlay::redraw);
    for (QCheckBox* c : {chkTiled, chkMaskColor})
        connect(c, &QCheckBox::toggled, this, &fOverlay::redraw);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);

    setMaskColor(0);
    sourceChanged();
}

fImage* fOverlay::Source() const {
    const int i = cbOverlay->currentIndex();
    return i >= 0 && i < int(sources_.size()) ? sources_[size_t(i)] : nullptr;
}

OverlayOptions fOverlay::Options() const {
    OverlayOptions o;
    o.left = sbXOffset->value();
    o.top = sbYOffset->value();
    o.transparency = sbTransparency->value();
    o.tiled = chkTiled->isChecked();
    o.maskColor = chkMaskColor->isChecked() ? maskColor_ : -1;
    o.createNew = chkCreateNew->isChecked();
    return o;
}

void fOverlay::sourceChanged() {
    cmdOK->setEnabled(Source() != nullptr);
    redraw();
}

void fOverlay::setMaskColor(int32_t bgr) {
    maskColor_ = bgr & 0xFFFFFF;
    QPalette pal = lblMaskColor->palette();
    pal.setColor(QPalette::Window, QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF));
    lblMaskColor->setPalette(pal);
    redraw();
}

void fOverlay::redraw() {
    lblXOffset->setText(QString::number(sbXOffset->value()));
    lblYOffset->setText(QString::number(sbYOffset->value()));
    lblTransparency->setText(QStringLiteral("%1 %").arg(sbTransparency->value()));
    preview_ = QImage(kPreviewSide, kPreviewSide, QImage::Format_RGB32);
    preview_.fill(palette().color(QPalette::Mid));
    previewRect_ = QRect();
    const int w = dest_.PictureWidth(), h = dest_.PictureHeight();
    if (w >= 1 && h >= 1) {
        // The result's canvas fitted into the preview; destination and source shrunk by the
        // same scale (nearest neighbour, so the mask colour still matches), then overlaid
        // exactly as OK will.
        const fImage* src = Source();
        const int sw = src ? src->PictureWidth() : 0, sh = src ? src->PictureHeight() : 0;
        OverlayOptions o = Options();
        const FitSize canvas = src ? OverlayCanvas(w, h, sw, sh, o) : FitSize{w, h};
        const FitSize fit = FitToBox(canvas.width, canvas.height, kPreviewSide, kPreviewSide);
        scale_ = double(fit.width) / canvas.width;
        cBitFilter filter;
        filter.BitsResize(dest_.bits(), scaled(w, scale_), scaled(h, scale_));
        Bits result = filter.bits();
        sourceThumb_ = Bits();
        if (src) {
            filter.BitsResize(src->bits(), scaled(sw, scale_), scaled(sh, scale_));
            sourceThumb_ = filter.bits();
            o.left = vbRound(o.left * scale_);
            o.top = vbRound(o.top * scale_);
            result = OverlayBits(filter, result, sourceThumb_, o);
        }
        previewRect_ = QRect((kPreviewSide - result.width()) / 2, (kPreviewSide - result.height()) / 2,
                             result.width(), result.height());
        QPainter p(&preview_);
        p.drawImage(previewRect_.topLeft(), toImage(result));
    }
    iSrc->setPixmap(QPixmap::fromImage(preview_));
}

void fOverlay::PickMaskColor(QPoint p) {
    if (!chkMaskColor->isChecked() || !previewRect_.contains(p)) return;
    const QPoint q = p - previewRect_.topLeft();
    // Over the source, the source's own colour; beside it, what the preview shows.
    if (!sourceThumb_.empty()) {
        OverlayOptions o = Options();
        o.left = vbRound(o.left * scale_);
        o.top = vbRound(o.top * scale_);
        int32_t x0 = 0, y0 = 0;
        const int tw = sourceThumb_.width(), th = sourceThumb_.height();
        OverlayStart(tw, th, o, x0, y0);
        int x = q.x() - x0, y = q.y() - y0;
        if (o.tiled) {
            x = ((x % tw) + tw) % tw;
            y = ((y % th) + th) % th;
        }
        if (x >= 0 && y >= 0 && x < tw && y < th) {
            setMaskColor(sourceThumb_(2, x, y) | sourceThumb_(1, x, y) << 8 | sourceThumb_(0, x, y) << 16);
            return;
        }
    }
    const QRgb c = preview_.pixel(p);
    setMaskColor(qRed(c) | qGreen(c) << 8 | qBlue(c) << 16);
}

bool fOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (watched == iSrc && event->type() == QEvent::MouseButtonPress) {
        auto* e = static_cast<QMouseEvent*>(event);
        if (e->button() == Qt::LeftButton) PickMaskColor(e->position().toPoint());
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void RunOverlayDialog(fImage* active, DocumentHost& host, const OverlayHost& window, QWidget* parent) {
    if (!active || !active->PictureExists()) return;
    fOverlay dialog(*active, host.Documents(), parent);
    if (dialog.exec() != QDialog::Accepted) return;
    fImage* source = dialog.Source();
    if (!source) return;
    ApplyOverlay(*active, source->GetBits(), dialog.Options(), host, window);
}

} // namespace ostrivex
