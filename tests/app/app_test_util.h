// Shared set-up of the application tests: a QApplication on the offscreen platform, and
// for every test a fresh program folder (OSTRIVEX_HOME) and a fresh private temporary
// folder (XDG_RUNTIME_DIR), so that settings, work files and the instance lock never meet
// another run's. Also: the program's globals reset, and a main window with documents.
#pragma once

#include "app/fmain.h"
#include "app/globals.h"
#include "app/settings/settings.h"
#include "document/fimage.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>

namespace ostrivex::testing {

class FreshHome : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(home_.isValid());
        ASSERT_TRUE(runtime_.isValid());
        setenv("OSTRIVEX_HOME", home_.path().toLocal8Bit().constData(), 1);
        setenv("XDG_RUNTIME_DIR", runtime_.path().toLocal8Bit().constData(), 1);
        Settings = SettingsRecord{};
    }
    QString home() const { return home_.path(); }

    QTemporaryDir home_;
    QTemporaryDir runtime_;
};

// The program's globals as a fresh start leaves them: the default settings of the program
// folder, no caption of a last command, no changed and no active document.
inline void ResetProgramGlobals() {
    SetDefaultSettings(Settings, AppFolder());
    LastCommandCaption.clear();
    DocumentChanged = false;
    ActiveDocument = nullptr;
}

// A new document of `bits` in `main`, with its first undo state ("Original") and cFilter
// loaded from it.
inline fImage* OpenDocument(fMain& main, const Bits& bits) {
    auto* doc = new fImage;
    main.AddDocumentWindow(doc);
    doc->BeginDocument(QString());
    doc->Model().Start(Bits(bits), "Original");
    main.Filter().SetBits(doc->bits());
    return doc;
}

// A fresh home, fresh globals and a main window (`main_`) for every test.
class WithMainWindow : public FreshHome {
  protected:
    void SetUp() override {
        FreshHome::SetUp();
        ResetProgramGlobals();
        main_ = std::make_unique<fMain>();
    }
    void TearDown() override { main_.reset(); }

    std::unique_ptr<fMain> main_;
};

// Runs `inspect` on the first modal dialog that opens and then closes it, so that code
// which asks the user can run inside a test.
inline void answerNextModal(std::function<void(QWidget*)> inspect) {
    auto* timer = new QTimer(qApp);
    timer->setInterval(20);
    QObject::connect(timer, &QTimer::timeout, [timer, inspect] {
        if (QWidget* w = QApplication::activeModalWidget()) {
            timer->stop();
            timer->deleteLater();
            inspect(w);
            w->close();
        }
    });
    timer->start();
}

} // namespace ostrivex::testing

// Every application test program starts here: offscreen unless told otherwise.
#define OSTRIVEX_APP_TEST_MAIN()                                                                   \
    int main(int argc, char** argv) {                                                              \
        setenv("QT_QPA_PLATFORM", "offscreen", 0);                                                 \
        QApplication app(argc, argv);                                                              \
        ::testing::InitGoogleTest(&argc, argv);                                                    \
        return RUN_ALL_TESTS();                                                                    \
    }
