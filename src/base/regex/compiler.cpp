#include <algorithm>
#include <unordered_map>
#include <utility>

#include "base/regex/program.h"

namespace kelmora::regex {
namespace {

// What can come after a place in the pattern.
struct Continuation {
    ByteSet bytes;
    bool any = false;      // no byte can be ruled out
    bool atEnd = false;    // may succeed at the end of the subject
    bool accepts = false;  // surely succeeds
};

Continuation before(const Opening& opening, const Continuation& next) {
    Continuation result;
    result.bytes = opening.bytes;
    if (opening.passes) result.bytes |= next.bytes;
    result.any = opening.opaque || (opening.passes && next.any);
    const bool nextAtEnd = next.any || next.atEnd;
    result.atEnd = (opening.passes || opening.passesAtEnd) && nextAtEnd;
    return result;
}

Continuation either(Continuation a, const Continuation& b) {
    a.bytes |= b.bytes;
    a.any |= b.any;
    a.atEnd |= b.atEnd;
    a.accepts = false;
    return a;
}

// Turns the tree into code front to back. Pending work stands on a heap stack, so that the depth of the tree
// costs no native stack.
class Compiler {
public:
    Compiler(const SyntaxTree& tree, bool ignoreCase) : tree_(tree) { program_.ignoreCase = ignoreCase; }

    Program compile() {
        const Continuation accepting{{}, true, true, true};
        pushNode(tree_.root, accepting);
        while (!tasks_.empty()) {
            const Task task = tasks_.back();
            tasks_.pop_back();
            run(task);
        }
        emit({Op::accept});
        program_.groupCount = tree_.groupCount;
        planSearch(accepting);
        return std::move(program_);
    }

private:
    struct Task {
        enum class Kind : std::uint8_t {
            node,
            emit,
            optional,
            loop,
            closeLoop,
            closeRounds,
            alternative,
            closeAlternative,
            closeChoice,
            patchExits
        };

        Kind kind = Kind::node;
        std::uint32_t node = 0;
        std::uint32_t at = 0;  // an instruction
        Instruction instruction;
        Continuation next;
    };
    struct Choice {
        std::vector<Continuation> rest;  // of the alternatives from each one on
        std::uint32_t current = 0;
    };

    std::uint32_t here() const { return static_cast<std::uint32_t>(program_.code.size()); }

    std::uint32_t emit(const Instruction& instruction) {
        program_.code.push_back(instruction);
        return here() - 1;
    }

    void push(Task::Kind kind, std::uint32_t node, std::uint32_t at, const Continuation& next) {
        tasks_.push_back({kind, node, at, {}, next});
    }
    void pushNode(std::uint32_t node, const Continuation& next) { push(Task::Kind::node, node, 0, next); }
    void pushEmit(const Instruction& instruction) {
        tasks_.push_back({Task::Kind::emit, 0, 0, instruction, {}});
    }

    void run(const Task& task) {
        const Node& node = tree_.nodes[task.node];
        switch (task.kind) {
            case Task::Kind::node:
                return compileNode(task.node, task.next);
            case Task::Kind::emit:
                emit(task.instruction);
                if (task.instruction.op == Op::lookAccept) program_.code[task.instruction.a].a = here();
                return;
            case Task::Kind::optional:
                return openOptional(node, task.next);
            case Task::Kind::loop:
                return openLoop(node, task.next);
            case Task::Kind::closeLoop:
                emit({Op::jump, 0, task.at});
                program_.code[task.at].b = here();
                return;
            case Task::Kind::closeRounds:
                return closeRounds(node, task.at, task.next);
            case Task::Kind::alternative:
                return openAlternative(node, task.next);
            case Task::Kind::closeAlternative:
                exits_.back().push_back(emit({Op::jump}));
                program_.code[task.at].b = here();
                return;
            case Task::Kind::closeChoice:
                choices_.pop_back();
                return;
            case Task::Kind::patchExits:
                for (const std::uint32_t exit : exits_.back()) program_.code[exit].b = here();
                exits_.pop_back();
                return;
        }
    }

    void compileNode(std::uint32_t index, const Continuation& next) {
        const Node& node = tree_.nodes[index];
        switch (node.kind) {
            case NodeKind::empty:
                return;
            case NodeKind::set:
                return compileSet(node.set);
            case NodeKind::sequence:
                return compileSequence(node, next);
            case NodeKind::choice:
                return compileChoice(index, next);
            case NodeKind::group:
                emit({Op::saveBegin, node.value});
                pushEmit({Op::saveEnd, node.value});
                return pushNode(tree_.child(node), next);
            case NodeKind::repeat:
            case NodeKind::oneOrMore:
                return compileRepeat(index, next);
            case NodeKind::lineBegin:
                emit({Op::lineBegin});
                return;
            case NodeKind::lineEnd:
                emit({Op::lineEnd});
                return;
            case NodeKind::wordBoundary:
                emit({Op::wordBoundary});
                return;
            case NodeKind::notWordBoundary:
                emit({Op::notWordBoundary});
                return;
            case NodeKind::backReference:
                emit({Op::backReference, node.value});
                return;
            case NodeKind::lookahead:
            case NodeKind::negativeLookahead:
                return compileLook(node);
        }
    }

    void compileSet(const ByteSet& set) {
        if (set.size() == 1)
            emit({Op::byte, set.next(0)});
        else
            emit({Op::set, intern(set)});
    }

    bool isSingleByte(std::uint32_t index) const {
        const Node& node = tree_.nodes[index];
        return node.kind == NodeKind::set && node.set.size() == 1;
    }

    // Neighbouring single bytes become one literal.
    void compileSequence(const Node& node, const Continuation& next) {
        Continuation after = next;
        for (std::uint32_t i = node.childCount; i > 0;) {
            const std::uint32_t index = tree_.child(node, --i);
            std::uint32_t first = i;
            while (first > 0 && isSingleByte(index) && isSingleByte(tree_.child(node, first - 1))) --first;
            if (first < i) {
                const auto offset = static_cast<std::uint32_t>(program_.literals.size());
                for (std::uint32_t k = first; k <= i; ++k)
                    program_.literals += static_cast<char>(tree_.nodes[tree_.child(node, k)].set.next(0));
                pushEmit({Op::literal, offset, i - first + 1});
                i = first;
            } else {
                pushNode(index, after);
            }
            after = before(tree_.nodes[tree_.child(node, i)].opening, after);
        }
    }

    void compileChoice(std::uint32_t index, const Continuation& next) {
        const Node& node = tree_.nodes[index];
        Choice choice;
        choice.rest.resize(node.childCount);
        for (std::uint32_t i = node.childCount; i-- > 0;) {
            choice.rest[i] = before(tree_.nodes[tree_.child(node, i)].opening, next);
            if (i + 1 < node.childCount) choice.rest[i] = either(choice.rest[i], choice.rest[i + 1]);
        }
        choices_.push_back(std::move(choice));
        exits_.emplace_back();
        push(Task::Kind::patchExits, index, 0, next);
        push(Task::Kind::closeChoice, index, 0, next);
        push(Task::Kind::alternative, index, 0, next);
    }

    void openAlternative(const Node& node, const Continuation& next) {
        Choice& choice = choices_.back();
        const std::uint32_t child = tree_.child(node, choice.current++);
        if (choice.current == node.childCount) return pushNode(child, next);
        const Filter first = filterFor(before(tree_.nodes[child].opening, next));
        const Filter second = filterFor(choice.rest[choice.current]);
        const std::uint32_t split = emit({Op::split, here() + 1, 0, first, second});
        const auto index = static_cast<std::uint32_t>(&node - tree_.nodes.data());
        push(Task::Kind::alternative, index, 0, next);
        push(Task::Kind::closeAlternative, index, split, next);
        pushNode(child, next);
    }

    // A lookahead is a match of its own: nothing comes after its end.
    void compileLook(const Node& node) {
        const Op op = node.kind == NodeKind::lookahead ? Op::look : Op::negativeLook;
        const std::uint32_t at = emit({op, 0, node.firstCapture, node.lastCapture});
        pushEmit({Op::lookAccept, at});
        pushNode(tree_.child(node), {{}, true, true, true});
    }

    void compileRepeat(std::uint32_t index, const Continuation& next) {
        const Node& node = tree_.nodes[index];
        if (node.maximum == 0) return;
        if (compileByteLoop(node, next)) return;
        const std::uint32_t child = tree_.child(node);
        Continuation again = either(before(tree_.nodes[child].opening, next), next);
        if (node.kind == NodeKind::oneOrMore) {
            push(Task::Kind::closeRounds, index, here(), next);
            return pushNode(child, again);
        }
        if (node.maximum == unlimited) {
            push(Task::Kind::loop, index, 0, next);
        } else {
            const std::uint32_t optional = node.maximum - node.minimum;
            exits_.emplace_back();
            push(Task::Kind::patchExits, index, 0, next);
            for (std::uint32_t i = 0; i < optional; ++i) push(Task::Kind::optional, index, 0, next);
        }
        for (std::uint32_t i = 0; i < node.minimum; ++i) pushNode(child, again);
    }

    void openOptional(const Node& node, const Continuation& next) {
        exits_.back().push_back(emitBranch(node, next));
        pushNode(tree_.child(node), either(before(tree_.nodes[tree_.child(node)].opening, next), next));
    }

    void openLoop(const Node& node, const Continuation& next) {
        const std::uint32_t child = tree_.child(node);
        const std::uint32_t at = emitBranch(node, next);
        push(Task::Kind::closeLoop, static_cast<std::uint32_t>(&node - tree_.nodes.data()), at, next);
        pushNode(child, either(before(tree_.nodes[child].opening, next), next));
    }

    void closeRounds(const Node& node, std::uint32_t body, const Continuation& next) {
        const std::uint32_t at = emitBranch(node, next);
        program_.code[at].a = body;
        program_.code[at].b = here();
    }

    // A choice between another round, which follows, and the exit, whose address is still to come.
    std::uint32_t emitBranch(const Node& node, const Continuation& next) {
        const Node& child = tree_.nodes[tree_.child(node)];
        if (child.minimumLength == 0) {
            const Op op = node.lazy ? Op::guardedLoopLazy : Op::guardedLoop;
            return emit({op, here() + 1, 0, program_.guardCount++});
        }
        const Filter round = filterFor(before(child.opening, next));
        const Filter exit = filterFor(next);
        return emit({node.lazy ? Op::splitLazy : Op::split, here() + 1, 0, round, exit});
    }

    bool compileByteLoop(const Node& node, const Continuation& next) {
        const Node* body = &tree_.nodes[tree_.child(node)];
        Loop loop;
        if (body->kind == NodeKind::group) {
            if (node.lazy) return false;
            loop.group = body->value;
            body = &tree_.nodes[tree_.child(*body)];
        }
        if (body->kind != NodeKind::set) return false;
        loop.set = intern(body->set);
        loop.minimum = node.minimum;
        loop.maximum = node.maximum;
        loop.next = filterFor(next);
        chooseRun(loop, body->set);
        const bool possessive = next.accepts || (!next.any && !next.bytes.intersects(body->set));
        Op op = node.lazy ? Op::loopLazy : possessive ? Op::loopPossessive : Op::loopGreedy;
        if (loop.group != 0) op = Op::loopCapture;
        emit({op, static_cast<std::uint32_t>(program_.loops.size())});
        program_.loops.push_back(loop);
        return true;
    }

    static void chooseRun(Loop& loop, const ByteSet& set) {
        const ByteSet stops = set.inverted();
        const unsigned first = stops.next(0);
        switch (stops.size()) {
            case 0:
                loop.run = Loop::Run::everything;
                return;
            case 1:
                loop.run = Loop::Run::allButOne;
                loop.stops[0] = static_cast<unsigned char>(first);
                return;
            case 2:
                loop.run = Loop::Run::allButTwo;
                loop.stops = {static_cast<unsigned char>(first),
                              static_cast<unsigned char>(stops.next(first + 1))};
                return;
            default:
                loop.run = Loop::Run::table;
        }
    }

    std::uint32_t intern(const ByteSet& set) {
        const auto [entry, added] = sets_.try_emplace(set, static_cast<std::uint32_t>(sets_.size()));
        const std::uint32_t id = entry->second;
        if (!added) return id;
        if (id % 8 == 0) program_.tables.emplace_back();
        for (unsigned byte = 0; byte < 256; ++byte)
            if (set.contains(byte))
                program_.tables[id / 8][byte] =
                    static_cast<std::uint8_t>(program_.tables[id / 8][byte] | (1u << (id % 8)));
        return id;
    }

    Filter filterFor(const Continuation& next) {
        if (next.any || (next.atEnd && next.bytes.size() == 256)) return noFilter;
        return intern(next.bytes) << 1 | (next.atEnd ? 1 : 0);
    }

    void planSearch(const Continuation& accepting) {
        SearchPlan& plan = program_.plan;
        const Node& root = tree_.nodes[tree_.root];
        plan.minimumLength = root.minimumLength;
        plan.filter = filterFor(before(root.opening, accepting));
        if (plan.filter != noFilter) plan.kind = SearchPlan::Kind::filter;
        std::size_t first = 0;
        while (program_.code[first].op == Op::saveBegin) ++first;
        const Instruction& start = program_.code[first];
        switch (start.op) {
            case Op::lineBegin:
                plan.kind = SearchPlan::Kind::onlyFirst;
                break;
            case Op::byte:
                plan.prefix = static_cast<char>(start.a);
                break;
            case Op::literal:
                plan.prefix = program_.literals.substr(start.a, start.b);
                break;
            case Op::loopPossessive:
            case Op::loopGreedy:
            case Op::loopLazy:
            case Op::loopCapture:
                planRuns(start.a);
                break;
            default:
                break;
        }
        if (!plan.prefix.empty()) {
            plan.kind = SearchPlan::Kind::prefix;
            plan.wholeIsPrefix = tree_.groupCount == 0 && program_.code[1].op == Op::accept;
        }
    }

    void planRuns(std::uint32_t loop) {
        program_.plan.leadingLoop = loop;
        program_.plan.skipsRuns =
            program_.loops[loop].maximum == unlimited && !tree_.hasLookahead && !tree_.hasBackReference;
    }

    struct SetHash {
        std::size_t operator()(const ByteSet& set) const { return set.hash(); }
    };

    const SyntaxTree& tree_;
    Program program_;
    std::vector<Task> tasks_;
    std::vector<Choice> choices_;
    std::vector<std::vector<std::uint32_t>> exits_;  // of the open choices and optional rounds, to be patched
    std::unordered_map<ByteSet, std::uint32_t, SetHash> sets_;
};

}  // namespace

Program compileTree(const SyntaxTree& tree, bool ignoreCase) {
    return Compiler(tree, ignoreCase).compile();
}

}  // namespace kelmora::regex
