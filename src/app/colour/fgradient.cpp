#include "app/colour/fgradient.h"

#include "app/colour/bcolortool.h"
#include "app/colour/pickcolour.h"
#include "app/settings/settings.h"

#include <QDialogButtonBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivex {

namespace {

int32_t bgr(int r, int g, int b) {
    return int32_t(r | (g << 8) | (b << 16));
}
int redOf(int32_t c) {
    return c & 0xFF;
}
int greenOf(int32_t c) {
    return (c >> 8) & 0xFF;
}
int blueOf(int32_t c) {
    return (c >> 16) & 0xFF;
}

void paintSample(QWidget* w, int32_t c) {
    QPalette pal = w->palette();
    pal.setColor(QPalette::Window, QColor::fromRgb(BgrToQRgb(c)));
    w->setPalette(pal);
}

} // namespace

QString ColourHex(int32_t colour) {
    return QString("#%1%2%3")
        .arg(redOf(colour), 2, 16, QChar('0'))
        .arg(greenOf(colour), 2, 16, QChar('0'))
        .arg(blueOf(colour), 2, 16, QChar('0'))
        .toUpper();
}

bool ParseColourHex(const QString& text, int32_t& colour) {
    QString t = text.trimmed();
    if (t.startsWith('#')) t.remove(0, 1);
    if (t.size() != 6) return false;
    bool ok = false;
    const uint v = t.toUInt(&ok, 16);
    if (!ok) return false;
    colour = bgr(int((v >> 16) & 0xFF), int((v >> 8) & 0xFF), int(v & 0xFF));
    return true;
}

// --- Hue and saturation field ------------------------------------------------------------

HueSatField::HueSatField(QWidget* parent) : QWidget(parent) {
    setObjectName("HueSat");
    setMinimumSize(160, 128);
    setCursor(Qt::CrossCursor);
}

void HueSatField::setHueSat(double hue, double sat) {
    hue_ = hue;
    sat_ = sat;
    update();
}

void HueSatField::resizeEvent(QResizeEvent*) {
    field_ = QImage(size(), QImage::Format_RGB32);
    const int w = std::max(1, width() - 1), h = std::max(1, height() - 1);
    for (int y = 0; y < height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(field_.scanLine(y));
        for (int x = 0; x < width(); ++x)
            line[x] =
                QColor::fromHsvF(std::min(0.9999, double(x) / w), 1.0 - double(y) / h, 1.0).rgb();
    }
}

void HueSatField::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.drawImage(0, 0, field_);
    const QPointF at(hue_ * (width() - 1), (1.0 - sat_) * (height() - 1));
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(Qt::black, 2));
    p.drawEllipse(at, 5, 5);
    p.setPen(QPen(Qt::white, 1));
    p.drawEllipse(at, 5, 5);
}

void HueSatField::pickAt(QPointF p) {
    hue_ = std::clamp(p.x() / std::max(1, width() - 1), 0.0, 1.0);
    sat_ = std::clamp(1.0 - p.y() / std::max(1, height() - 1), 0.0, 1.0);
    update();
    emit picked(hue_, sat_);
}

void HueSatField::mousePressEvent(QMouseEvent* e) {
    if (e->button() == Qt::LeftButton) pickAt(e->position());
}

void HueSatField::mouseMoveEvent(QMouseEvent* e) {
    if (e->buttons() & Qt::LeftButton) pickAt(e->position());
}

// --- Value bar ---------------------------------------------------------------------------

ValueBar::ValueBar(QWidget* parent) : QWidget(parent) {
    setObjectName("ValueBar");
    setFixedWidth(22);
    setMinimumHeight(128);
}

void ValueBar::setHsv(double hue, double sat, double val) {
    hue_ = hue;
    sat_ = sat;
    val_ = val;
    update();
}

void ValueBar::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const QRect bar = rect().adjusted(4, 0, -4, 0);
    QLinearGradient g(0, 0, 0, height());
    g.setColorAt(0, QColor::fromHsvF(std::min(0.9999, hue_), sat_, 1.0));
    g.setColorAt(1, Qt::black);
    p.fillRect(bar, g);
    p.setPen(palette().color(QPalette::Shadow));
    p.drawRect(bar.adjusted(0, 0, -1, -1));
    const int y = int((1.0 - val_) * (height() - 1) + 0.5);
    p.setPen(palette().color(QPalette::WindowText));
    p.setBrush(palette().color(QPalette::WindowText));
    p.drawPolygon(QPolygon{{0, y - 4}, {4, y}, {0, y + 4}});
    p.drawPolygon(QPolygon{{width() - 1, y - 4}, {width() - 5, y}, {width() - 1, y + 4}});
}

void ValueBar::pickAt(double y) {
    val_ = std::clamp(1.0 - y / std::max(1, height() - 1), 0.0, 1.0);
    update();
    emit picked(val_);
}

void ValueBar::mousePressEvent(QMouseEvent* e) {
    if (e->button() == Qt::LeftButton) pickAt(e->position().y());
}

void ValueBar::mouseMoveEvent(QMouseEvent* e) {
    if (e->buttons() & Qt::LeftButton) pickAt(e->position().y());
}

// --- The dialog ----------------------------------------------------------------------------

fGradient::fGradient(QWidget* parent) : QDialog(parent) {
    setObjectName("fGradient");
    setWindowTitle("Color");
    setModal(true);

    field_ = new HueSatField(this);
    valueBar_ = new ValueBar(this);

    auto spin = [this](const char* name) {
        auto* s = new QSpinBox(this);
        s->setObjectName(name);
        s->setRange(0, 255);
        return s;
    };
    red_ = spin("txtRed");
    green_ = spin("txtGreen");
    blue_ = spin("txtBlue");
    hex_ = new QLineEdit(this);
    hex_->setObjectName("txtHex");
    hex_->setMaxLength(7);
    hex_->setFixedWidth(72);

    auto sample = [this](const char* name) {
        auto* f = new QFrame(this);
        f->setObjectName(name);
        f->setFrameShape(QFrame::Box);
        f->setAutoFillBackground(true);
        f->setFixedSize(48, 32);
        return f;
    };
    oldSample_ = sample("picOld");
    newSample_ = sample("picNew");

    auto* numbers = new QGridLayout;
    numbers->addWidget(new QLabel("&Red:", this), 0, 0);
    numbers->addWidget(red_, 0, 1);
    numbers->addWidget(new QLabel("&Green:", this), 1, 0);
    numbers->addWidget(green_, 1, 1);
    numbers->addWidget(new QLabel("&Blue:", this), 2, 0);
    numbers->addWidget(blue_, 2, 1);
    numbers->addWidget(new QLabel("&Hex:", this), 3, 0);
    numbers->addWidget(hex_, 3, 1);
    for (int i = 0; i < 4; ++i)
        static_cast<QLabel*>(numbers->itemAtPosition(i, 0)->widget())
            ->setBuddy(numbers->itemAtPosition(i, 1)->widget());
    auto* samples = new QHBoxLayout;
    auto* oldCol = new QVBoxLayout;
    oldCol->addWidget(new QLabel("Old", this));
    oldCol->addWidget(oldSample_);
    auto* newCol = new QVBoxLayout;
    newCol->addWidget(new QLabel("New", this));
    newCol->addWidget(newSample_);
    samples->addLayout(oldCol);
    samples->addLayout(newCol);
    samples->addStretch(1);
    numbers->addLayout(samples, 4, 0, 1, 2);
    numbers->setRowStretch(5, 1);

    auto* top = new QHBoxLayout;
    top->addWidget(field_, 1);
    top->addWidget(valueBar_);
    top->addSpacing(8);
    top->addLayout(numbers);

    auto* cells = new QGridLayout;
    cells->setSpacing(3);
    for (int i = 0; i < 16; ++i) {
        auto* cell = new bColorTool(this);
        cell->setObjectName("CustomColor");
        cell->setProperty("index", i);
        cell->setPicksOnClick(false);
        cell->setCheckable(true);
        cell->setAutoExclusive(true);
        cell->setFixedSize(20, 20);
        cell->setColour(Settings.CustomColors[size_t(i)]);
        connect(cell, &QAbstractButton::clicked, this, [this, i] { chooseCustom(i); });
        cells->addWidget(cell, i / 8, i % 8);
        custom_[size_t(i)] = cell;
    }
    auto* add = new QPushButton("&Add to Custom Colors", this);
    add->setObjectName("cmdAddCustom");
    connect(add, &QPushButton::clicked, this, &fGradient::addCustom);
    auto* customRow = new QHBoxLayout;
    customRow->addLayout(cells);
    customRow->addStretch(1);
    customRow->addWidget(add, 0, Qt::AlignBottom);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->setObjectName("Buttons");
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* all = new QVBoxLayout(this);
    all->addLayout(top, 1);
    all->addWidget(new QLabel("Custom colors:", this));
    all->addLayout(customRow);
    all->addWidget(buttons);

    connect(field_, &HueSatField::picked, this, [this](double h, double s) {
        hue_ = h;
        sat_ = s;
        fromHsv();
    });
    connect(valueBar_, &ValueBar::picked, this, [this](double v) {
        val_ = v;
        fromHsv();
    });
    auto numberChanged = [this] {
        if (!updating_) setNew(bgr(red_->value(), green_->value(), blue_->value()), false);
    };
    connect(red_, &QSpinBox::valueChanged, this, numberChanged);
    connect(green_, &QSpinBox::valueChanged, this, numberChanged);
    connect(blue_, &QSpinBox::valueChanged, this, numberChanged);
    connect(hex_, &QLineEdit::textEdited, this, [this](const QString& t) {
        int32_t c = 0;
        if (ParseColourHex(t, c)) setNew(c, false);
    });
    connect(hex_, &QLineEdit::editingFinished, this, [this] {
        const QSignalBlocker b(hex_);
        hex_->setText(ColourHex(colour_));
    });
    setColour(0);
}

void fGradient::setColour(int32_t colour) {
    old_ = colour & 0xFFFFFF;
    paintSample(oldSample_, old_);
    setNew(old_, false);
}

void fGradient::setNew(int32_t colour, bool keepHsv) {
    colour_ = colour & 0xFFFFFF;
    if (!keepHsv) {
        const QColor q = QColor::fromRgb(BgrToQRgb(colour_));
        float h = 0, s = 0, v = 0;
        q.getHsvF(&h, &s, &v);
        if (h >= 0) hue_ = h; // a grey has no hue: keep the one the user had
        if (v > 0) sat_ = s;  // black has no saturation either
        val_ = v;
    }
    showAll();
}

void fGradient::fromHsv() {
    const QColor q = QColor::fromHsvF(std::min(0.9999, hue_), sat_, val_);
    setNew(bgr(q.red(), q.green(), q.blue()), true);
}

void fGradient::showAll() {
    updating_ = true;
    {
        const QSignalBlocker a(red_), b(green_), c(blue_);
        red_->setValue(redOf(colour_));
        green_->setValue(greenOf(colour_));
        blue_->setValue(blueOf(colour_));
    }
    if (!hex_->hasFocus()) {
        const QSignalBlocker h(hex_);
        hex_->setText(ColourHex(colour_));
    }
    updating_ = false;
    field_->setHueSat(hue_, sat_);
    valueBar_->setHsv(hue_, sat_, val_);
    paintSample(newSample_, colour_);
}

void fGradient::chooseCustom(int i) {
    chosenCustom_ = i;
    if (i < 0) return;
    custom_[size_t(i)]->setChecked(true);
    setNew(custom_[size_t(i)]->colour(), false);
}

void fGradient::addCustom() {
    int i = chosenCustom_;
    if (i < 0) {
        i = nextCustom_;
        nextCustom_ = (nextCustom_ + 1) % 16;
    }
    Settings.CustomColors[size_t(i)] = colour_;
    custom_[size_t(i)]->setColour(colour_);
}

} // namespace ostrivex
