#include "tool/play/start_place.h"

#include <stdexcept>
#include <vector>

#include "script/interpreter.h"
#include "script/table_object.h"
#include "tool/play/novel_view.h"
#include "workbench/nearest.h"

namespace kelmora {

void StartPlace::beforeUpdate() {
    if (isDone_) return;
    const NovelView novel(session_.runtime().engine);
    if (!novel.isNovel()) {
        isDone_ = true;
        return jump();
    }
    if (novel.screen() != "title") return;
    isDone_ = true;
    startNovel();
}

void StartPlace::startNovel() {
    VesperScript& engine = session_.runtime().engine;
    const Variable start = globalOf(engine, "novelStartAt");
    if (!start.isFunction()) throw std::runtime_error("the game's library for novels knows no --at");
    if (isTruthy(engine.callCallable(start, {Variable::text(name_)}))) return;
    std::vector<std::string> known = NovelView(engine).story().scenes;
    if (const Variable marks = globalOf(engine, "novelMarks"); marks.isTable())
        for (const auto& mark : marks.table().sortedKeys()->keys) known.push_back(mark->text());
    const std::string near = nearestWord(name_, known);
    throw std::runtime_error("there is no scene or mark " + name_ +
                             (near.empty() ? "" : "; did you mean " + near + "?"));
}

void StartPlace::jump() {
    Interpreter& script = session_.runtime().engine.interpreter();
    Labels::Target target;
    if (!script.labels.find(name_, target))
        throw std::runtime_error("there is no label " + name_ + " in what the game has run so far");
    session_.runtime().engine.callCallable(globalOf(session_.runtime().engine, "jumpTo"),
                                           {Variable::text(name_)});
}

}  // namespace kelmora
