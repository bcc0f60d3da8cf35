// A driver for looking at the tools in the running editor (not a test): starts the editor
// as the program does, opens a picture, and sends the canvas the mouse events of a brush
// stroke, a fill and a rectangle selection, then saves a screenshot of the screen.
//
//   xvfb-run -s "-screen 0 1280x800x24" build/bin/tools_harness /tmp/shots/tools-editor.png
//
// The tool word and its settings are set directly, as the tool panels would set them.
#include "app/fmain.h"
#include "app/settings/settings.h"
#include "app/startup.h"
#include "app/toolbox.h"
#include "document/fileops.h"
#include "document/fimage.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QPixmap>
#include <QScreen>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>
#include <cstdlib>

using namespace ostrivex;

namespace {

void pump(int ms) {
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(10);
    }
}

void send(QWidget* canvas, QEvent::Type type, QPoint pos, Qt::MouseButton button,
          Qt::MouseButtons buttons) {
    QMouseEvent e(type, QPointF(pos), canvas->mapToGlobal(QPointF(pos)), button, buttons,
                  Qt::NoModifier);
    QCoreApplication::sendEvent(canvas, &e);
    QCoreApplication::processEvents();
}

// A press at the first point, moves through the others with the button held, a release
// at the last.
void stroke(QWidget* canvas, const std::vector<QPoint>& points) {
    send(canvas, QEvent::MouseMove, points.front(), Qt::NoButton, Qt::NoButton);
    send(canvas, QEvent::MouseButtonPress, points.front(), Qt::LeftButton, Qt::LeftButton);
    for (size_t i = 1; i < points.size(); ++i) {
        // Fill in the path a pixel or so at a time, as a real hand would.
        const QPoint a = points[i - 1], b = points[i];
        const int steps = std::max(std::abs(b.x() - a.x()), std::abs(b.y() - a.y()));
        for (int s = 1; s <= steps; ++s)
            send(canvas, QEvent::MouseMove, a + (b - a) * s / steps, Qt::NoButton, Qt::LeftButton);
    }
    send(canvas, QEvent::MouseButtonRelease, points.back(), Qt::LeftButton, Qt::NoButton);
}

void useTool(const char* word) { SetFieldText(Settings.ActiveTool, word); }

} // namespace

int main(int argc, char** argv) {
    const QString shot = argc > 1 ? QString::fromLocal8Bit(argv[1]) : "/tmp/shots/tools-editor.png";
    QTemporaryDir home, runtime;
    setenv("OSTRIVEX_HOME", home.path().toLocal8Bit().constData(), 1);
    setenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit().constData(), 1);
    QApplication app(argc, argv);
    app.setQuitOnLastWindowClosed(false);

    fMain* main = StartUp(nullptr);
    if (!main) return 1;
    main->showNormal();
    main->setGeometry(0, 0, 1280, 800);
    pump(300);
    // The boxes go out of the way of the picture.
    for (int b = 0; b < fMain::BoxCount; ++b)
        if (main->box(b)) main->box(b)->hide();
    pump(200);

    // A picture: a soft blue-green ramp with a dark band across it.
    QImage picture(320, 200, QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const bool band = y >= 120 && y < 150;
            picture.setPixel(x, y, band ? qRgb(40, 40, 60) : qRgb(200, 120 + x / 4, 140 + y / 2));
        }
    const QString file = home.path() + "/ramp.png";
    picture.save(file);
    fImage* doc = OpenImageFile(file);
    if (!doc) {
        std::fprintf(stderr, "the picture did not open\n");
        return 1;
    }
    if (auto* sub = qobject_cast<QMdiSubWindow*>(doc->parentWidget())) sub->move(20, 10);
    pump(500);
    QWidget* canvas = doc->Canvas();

    // A red brush stroke, a wave over the top of the picture.
    useTool("Brush");
    Settings.ColorPrimary = 0x0000FF;
    Settings.BrushMode = 0;
    Settings.BrushSize = 9;
    Settings.BrushPressure = 100;
    Settings.BrushContinuous = kTrue16;
    stroke(canvas, {{20, 40}, {70, 20}, {120, 60}, {170, 20}, {220, 60}, {290, 30}});
    pump(200);

    // A yellow fill of the dark band.
    useTool("Fill");
    Settings.ColorPrimary = 0x00FFFF;
    Settings.FillMode = 0;
    Settings.FillTolerance = 25;
    Settings.FillPressure = 100;
    stroke(canvas, {{100, 135}});
    pump(200);

    // A new rectangle selection in the lower part; its ants crawl.
    useTool("Select");
    Settings.SelectMode = 2;
    Settings.SelectShape = 0;
    stroke(canvas, {{40, 90}, {150, 170}, {260, 185}});
    pump(600);

    // A second rectangle added to it, held mid-drag: the rubber band shows, and a second
    // picture is taken before the release.
    Settings.SelectMode = 0;
    const QString rubberShot = QString(shot).replace(".png", "-rubber.png");
    send(canvas, QEvent::MouseMove, {200, 20}, Qt::NoButton, Qt::NoButton);
    send(canvas, QEvent::MouseButtonPress, {200, 20}, Qt::LeftButton, Qt::LeftButton);
    for (int i = 1; i <= 40; ++i)
        send(canvas, QEvent::MouseMove, {200 + i * 2, 20 + i}, Qt::NoButton, Qt::LeftButton);
    pump(300);
    if (QScreen* s = QGuiApplication::primaryScreen()) s->grabWindow(0).save(rubberShot);
    send(canvas, QEvent::MouseButtonRelease, {280, 60}, Qt::LeftButton, Qt::NoButton);
    pump(600);

    std::printf("document %dx%d, undo position %d, caption of the last step \"%s\", "
                "status \"%s\" \"%s\" \"%s\"\n",
                doc->PictureWidth(), doc->PictureHeight(), doc->HistoryPosition(),
                doc->History().ActionNames[size_t(doc->HistoryPosition() - 1)].c_str(),
                main->statusPanel("Pixel").toLocal8Bit().constData(),
                main->statusPanel("Position").toLocal8Bit().constData(),
                main->statusPanel("Color").toLocal8Bit().constData());
    QScreen* screen = QGuiApplication::primaryScreen();
    const QPixmap pixmap = screen ? screen->grabWindow(0) : main->grab();
    const bool saved = pixmap.save(shot);
    std::printf("screenshot %s: %s\n", saved ? "saved" : "not saved", shot.toLocal8Bit().constData());
    std::fflush(stdout);
    // The changed document would ask before closing: the run ends here, without the close.
    ReleaseInstanceLock();
    std::_Exit(saved ? 0 : 1);
}
