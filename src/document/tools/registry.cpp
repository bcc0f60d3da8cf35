// The tools by their word: one line a tool. Each tool is made once, the first time its word
// is asked for; tools keep no state of their own (the stroke's state is the window's).
#include "document/tools/tool.h"

#include <map>
#include <utility>

namespace ostrivex {

// Each line: the word and the tool's class; its file defines Make<Class>().
#define OSTRIVEX_TOOLS(X)                                                                  \
    X("Select", SelectTool)                                                                \
    X("SelectionMove", SelectionMoveTool)                                                  \
    X("Brush", BrushTool)                                                                  \
    X("Airbrush", AirbrushTool)                                                            \
    X("Fill", FillTool)                                                                    \
    X("Shape", ShapeTool)                                                                  \
    X("Pencil", PencilTool)                                                                \
    X("Stamp", StampTool)                                                                  \
    X("Gradient", GradientTool)                                                            \
    X("Text", TextTool)                                                                    \
    X("GetColor", GetColorTool)

#define DECLARE(word, name) std::unique_ptr<Tool> Make##name();
OSTRIVEX_TOOLS(DECLARE)

namespace {

using Factory = std::unique_ptr<Tool> (*)();

#define ROW(word, name) {word, &Make##name},
const std::vector<std::pair<const char*, Factory>> kTools = {OSTRIVEX_TOOLS(ROW)};

} // namespace

#undef ROW
#undef DECLARE
#undef OSTRIVEX_TOOLS

Tool* FindTool(const QString& word) {
    static std::map<QString, std::unique_ptr<Tool>> made;
    const QString key = word.trimmed();
    auto it = made.find(key);
    if (it != made.end()) return it->second.get();
    for (const auto& [name, make] : kTools)
        if (key == QLatin1String(name)) return (made[key] = make()).get();
    return nullptr;
}

std::vector<QString> ToolWords() {
    std::vector<QString> words;
    for (const auto& entry : kTools) words.push_back(QString::fromLatin1(entry.first));
    return words;
}

} // namespace ostrivex
