// A stand-in for the main window: records what the document code asks of it.
#pragma once

#include "document/fimage.h"
#include "document/fpaste.h"
#include "document/host.h"
#include "pixel/bitfilter.h"

#include <QMap>
#include <QStringList>

#include <algorithm>
#include <vector>

namespace ostrivex::test {

class FakeHost : public DocumentHost {
public:
    FakeHost() { SetDocumentHost(this); }
    ~FakeHost() override {
        for (fImage* d : std::vector<fImage*>(docs)) delete d;
        SetDocumentHost(nullptr);
    }

    cBitFilter filter;
    fPaste paste;
    std::vector<fImage*> docs;
    QStringList commands;
    QMap<QString, QString> panels;
    ViewScale zoomShown{0, 0};
    bool handDown = false;
    int activated = 0, deactivated = 0, clearedPanels = 0, clearedPan = 0, savedStates = 0, optimizeReloads = 0, recentFills = 0;

    cBitFilter& Filter() override { return filter; }
    fPaste* HistoryBox() override { return &paste; }
    QWidget* DialogParent() override { return nullptr; }
    void AddDocumentWindow(fImage* d) override { docs.push_back(d); }
    void RemoveDocumentWindow(fImage* d) override {
        docs.erase(std::remove(docs.begin(), docs.end(), d), docs.end());
    }
    std::vector<fImage*> Documents() override { return docs; }
    void RunCommand(const QString& word) override { commands << word; }
    void SetStatusPanel(const QString& key, const QString& text) override { panels[key] = text; }
    void ClearStatusPanels() override {
        panels.clear();
        ++clearedPanels;
    }
    void ShowZoom(ViewScale s) override { zoomShown = s; }
    bool HandScrollDown() override { return handDown; }
    void RefreshPanView() override {}
    void ClearPanView() override { ++clearedPan; }
    void ReloadOptimizePreview() override { ++optimizeReloads; }
    void UndoStateSaved(int) override { ++savedStates; }
    void FillRecent() override { ++recentFills; }
    void DocumentActivated(fImage*) override { ++activated; }
    void DocumentDeactivated(fImage*) override { ++deactivated; }
    void ViewChanged(fImage*, int) override {}
};

} // namespace ostrivex::test
