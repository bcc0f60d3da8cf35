// The contact sheet of the layer effects: every node of the effect tree on one sample
// picture, at two values of its slider (a node without a dialog beside the original), with
// the node's number, label and values written above.
#include "tools/batch/batch.h"

#include "imagefile/imagefile.h"
#include "pixel/bitfilter.h"
#include "pixel/effects/effecttree.h"

#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <ostream>

namespace ostrivex::batch {

namespace {

constexpr int kCellW = 160, kCellH = 107, kGap = 4, kLabelH = 15, kNodesPerRow = 4;

QImage imageOf(const Bits& b) {
    QImage img(b.width(), b.height(), QImage::Format_RGB32);
    for (int32_t y = 0; y < b.height(); ++y) std::memcpy(img.scanLine(y), b.row(y), size_t(b.width()) * 4u);
    return img;
}

// The two values shown: a quarter and three quarters of the way along the slider, or the
// ends where that value would give the default's own result.
std::pair<int32_t, int32_t> sampleValues(const effects::EffectNode& n, int32_t most) {
    const int32_t lo = n.min, span = most - n.min;
    int32_t a = lo + span / 4, b = lo + span * 3 / 4;
    const std::vector<double> neutral = effects::NodeValues(n, n.defaultValue, 0, 0);
    if (effects::NodeValues(n, a, 0, 0) == neutral) a = lo;
    if (effects::NodeValues(n, b, 0, 0) == neutral) b = most;
    return {a, b};
}

} // namespace

int makeContactSheet(const std::string& samplePath, const std::string& output, std::ostream& err) {
    const size_t dot = samplePath.rfind('.');
    if (!LoadDocumentImage(samplePath, dot == std::string::npos ? "" : samplePath.substr(dot + 1)).ok) {
        err << "ostrivex-batch: cannot load " << samplePath << "\n";
        return 2;
    }
    // Text needs a GUI application; without a display it draws off screen.
    std::unique_ptr<QGuiApplication> app;
    if (!QGuiApplication::instance()) {
        if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY")) setenv("QT_QPA_PLATFORM", "offscreen", 0);
        static int argc = 1;
        static char name[] = "ostrivex-batch";
        static char* argv[] = {name, nullptr};
        app = std::make_unique<QGuiApplication>(argc, argv);
    }
    cBitFilter f;
    f.BitsResample(LoadedBitmap, kCellW, kCellH);
    const Bits sample = f.GetBits();
    // The colours of the colour panels: a warm cream in the colour box, and the colour under
    // the middle of the picture as the picked one.
    const uint8_t* mid = sample.pixel(kCellW / 2, kCellH / 2);
    const uint32_t colour1 = 0x90D8FFu, colour2 = uint32_t(mid[2]) | uint32_t(mid[1]) << 8 | uint32_t(mid[0]) << 16;

    std::vector<const effects::EffectNode*> nodes;
    for (const effects::EffectNode& n : effects::EffectTree())
        if (!n.isHeading()) nodes.push_back(&n);
    const int rows = int(nodes.size() + kNodesPerRow - 1) / kNodesPerRow;
    const int pairW = 2 * kCellW + kGap, rowH = kLabelH + kCellH + kGap;
    QImage sheet(kNodesPerRow * (pairW + 3 * kGap), rows * rowH + kGap, QImage::Format_RGB32);
    sheet.fill(QColor(40, 40, 40));
    QPainter p(&sheet);
    QFont font = p.font();
    font.setPixelSize(11);
    p.setFont(font);
    p.setPen(QColor(235, 235, 235));
    for (size_t i = 0; i < nodes.size(); ++i) {
        const effects::EffectNode& n = *nodes[i];
        const int x = int(i % kNodesPerRow) * (pairW + 3 * kGap) + kGap, y = int(i / kNodesPerRow) * rowH + kGap;
        effects::clsTransForm transform;
        Bits a, b;
        QString label = QString::number(n.number) + " " + n.label;
        if (n.hasDialog()) {
            const auto [va, vb] = sampleValues(n, effects::EffectMaximum(n, kCellW, kCellH));
            effects::ApplyEffectNode(transform, n.number, a, sample, va, colour1, colour2, -1);
            effects::ApplyEffectNode(transform, n.number, b, sample, vb, colour1, colour2, -1);
            label += QString(": %1 | %2").arg(va).arg(vb);
        } else {
            effects::ApplyEffectNode(transform, n.number, a, sample, 0, colour1, colour2, -1);
            b = sample;
            label += " | original";
        }
        p.drawText(QRect(x, y, pairW, kLabelH), Qt::AlignLeft | Qt::AlignVCenter, label);
        p.drawImage(x, y + kLabelH, imageOf(a));
        p.drawImage(x + kCellW + kGap, y + kLabelH, imageOf(b));
    }
    p.end();
    Bits out(sheet.width(), sheet.height());
    for (int y = 0; y < sheet.height(); ++y) std::memcpy(out.row(y), sheet.constScanLine(y), size_t(sheet.width()) * 4u);
    const size_t odot = output.rfind('.');
    const ImageFileResult saved = SaveImageFile(out, output, odot == std::string::npos ? "" : output.substr(odot + 1));
    if (!saved.ok) {
        err << "ostrivex-batch: " << output << ": " << saved.message << "\n";
        return 2;
    }
    return 0;
}

} // namespace ostrivex::batch
