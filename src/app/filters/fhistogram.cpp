#include "app/filters/fhistogram.h"

#include <QButtonGroup>
#include <QCursor>
#include <QEnterEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivex {

namespace {

QColor channelColour(int channel) {
    switch (channel) {
    case HistogramBlue:
        return QColor(0, 0, 255);
    case HistogramGreen:
        return QColor(0, 255, 0);
    case HistogramRed:
        return QColor(255, 0, 0);
    default:
        return QColor(255, 255, 255);
    }
}

// The gradient bar under the plot.
class GradientBar : public QWidget {
  public:
    explicit GradientBar(QWidget* parent) : QWidget(parent) { setFixedHeight(12); }
    void setColour(QColor c) {
        colour_ = c;
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        QLinearGradient g(0, 0, width(), 0);
        g.setColorAt(0, Qt::black);
        g.setColorAt(1, colour_);
        p.fillRect(rect(), g);
    }

  private:
    QColor colour_ = Qt::white;
};

} // namespace

HistogramPlot::HistogramPlot(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("picHistogram"));
    setMouseTracking(true);
    setMinimumSize(256, 100);
}

void HistogramPlot::setStatus(const QString& text) {
    status_ = text;
    update();
}

void HistogramPlot::setTable(const std::array<int32_t, 256>* table, QColor colour) {
    table_ = table;
    colour_ = colour;
    status_.clear();
    update();
}

int HistogramPlot::levelAt(int x) const {
    return std::clamp(x * 256 / std::max(width(), 1), 0, 255);
}

void HistogramPlot::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), Qt::black);
    if (!table_) {
        p.setPen(Qt::white);
        p.drawText(rect().adjusted(2, 2, 0, 0), Qt::AlignLeft | Qt::AlignTop, status_);
        return;
    }
    const int32_t largest = *std::max_element(table_->begin(), table_->end());
    p.setPen(colour_);
    const double h = height();
    for (int v = 0; v < 256; ++v) {
        const double top = HistogramBarTop((*table_)[size_t(v)], largest) * h / 100.0;
        if (top >= h) continue;
        // Each level owns the columns from its own left edge to the next one's.
        const int x0 = v * width() / 256, x1 = std::max(x0 + 1, (v + 1) * width() / 256);
        p.fillRect(QRectF(x0, top, x1 - x0, h - top), colour_);
    }
}

void HistogramPlot::mouseMoveEvent(QMouseEvent* e) {
    emit hovered(levelAt(int(e->position().x())));
}

void HistogramPlot::enterEvent(QEnterEvent*) {
    emit entered();
}

fHistogram::fHistogram(const Bits& image, QWidget* parent) : QDialog(parent), image_(image) {
    setObjectName(QStringLiteral("fHistogram"));
    setWindowTitle(QStringLiteral("Histogram"));

    picHistogram = new HistogramPlot(this);
    picHistogram->setStatus(QString::fromLatin1(kExtractingText));
    auto* bar = new GradientBar(this);
    picGradient = bar;

    auto* channels = new QButtonGroup(this);
    const char* names[4] = {"Blue", "Green", "Red", "Luminousity"};
    auto* channelRow = new QHBoxLayout;
    for (int c = 0; c < 4; ++c) {
        optChannel[c] = new QRadioButton(QString::fromLatin1(names[c]), this);
        channels->addButton(optChannel[c], c);
        channelRow->addWidget(optChannel[c]);
    }
    // Luminosity first: the channel that says most about the whole picture.
    optChannel[HistogramLuminosity]->setChecked(true);

    frInfo = new QGroupBox(this);
    frInfo->setObjectName(QStringLiteral("frInfo"));
    auto* info = new QGridLayout(frInfo);
    lblQuantityV = new QLabel(frInfo);
    lblPixelsV = new QLabel(frInfo);
    lblLevelV = new QLabel(frInfo);
    lblAverageV = new QLabel(frInfo);
    lblPercentV = new QLabel(QStringLiteral("0.00%"), frInfo);
    const char* captions[4] = {"Quantity :", "Pixels :", "Level :", "Average :"};
    QLabel* values[4] = {lblQuantityV, lblPixelsV, lblLevelV, lblAverageV};
    for (int i = 0; i < 4; ++i) {
        info->addWidget(new QLabel(QString::fromLatin1(captions[i]), frInfo), i, 0);
        info->addWidget(values[i], i, 1);
    }
    info->addWidget(lblPercentV, 0, 2);

    cmdClose = new QPushButton(QStringLiteral("Close"), this);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);

    auto* plot = new QVBoxLayout;
    plot->setSpacing(2);
    plot->addWidget(picHistogram, 1);
    plot->addWidget(picGradient);
    auto* side = new QVBoxLayout;
    side->addWidget(frInfo);
    side->addStretch(1);
    side->addWidget(cmdClose);
    auto* top = new QHBoxLayout;
    top->addLayout(plot, 1);
    top->addLayout(side);
    auto* all = new QVBoxLayout(this);
    all->addLayout(channelRow);
    all->addLayout(top);

    tmrMouseIn = new QTimer(this);
    tmrMouseIn->setInterval(50);
    connect(tmrMouseIn, &QTimer::timeout, this, &fHistogram::followMouse);
    connect(picHistogram, &HistogramPlot::entered, tmrMouseIn, qOverload<>(&QTimer::start));
    connect(picHistogram, &HistogramPlot::hovered, this, &fHistogram::ShowLevel);
    connect(channels, &QButtonGroup::idToggled, this, [this](int, bool on) {
        if (on) showChannel();
    });

    QTimer::singleShot(0, this, &fHistogram::Extract);
}

int fHistogram::channel() const {
    for (int c = 0; c < 4; ++c)
        if (optChannel[c]->isChecked()) return c;
    return HistogramLuminosity;
}

void fHistogram::Extract() {
    if (extracted_) return;
    tables_ = BuildHistogram(image_);
    image_ = Bits(); // the copy is not needed any more
    extracted_ = true;
    lblPixelsV->setText(QString::fromStdString(FormatCountGrouped(tables_.pixelCount())));
    showChannel();
}

void fHistogram::showChannel() {
    if (!extracted_) return;
    const int c = channel();
    picHistogram->setTable(&tables_.Counts[size_t(c)], channelColour(c));
    static_cast<GradientBar*>(picGradient)->setColour(channelColour(c));
    lblAverageV->setText(QString::number(tables_.average(c)));
    if (!lblLevelV->text().isEmpty()) ShowLevel(lblLevelV->text().toInt());
}

void fHistogram::ShowLevel(int level) {
    if (!extracted_ || level < 0 || level > 255) return;
    const int32_t count = tables_.Counts[size_t(channel())][size_t(level)];
    lblLevelV->setText(QString::number(level));
    lblQuantityV->setText(QString::fromStdString(FormatCountGrouped(count)));
    lblPercentV->setText(QString::fromStdString(FormatSharePercent(count, tables_.pixelCount())));
}

// While the mouse is over the plot the readouts follow it; once it has left, the timer
// stops and the readouts keep the last level.
void fHistogram::followMouse() {
    const QPoint p = picHistogram->mapFromGlobal(QCursor::pos());
    if (!picHistogram->rect().contains(p)) {
        tmrMouseIn->stop();
        return;
    }
    ShowLevel(picHistogram->levelAt(p.x()));
}

} // namespace ostrivex
