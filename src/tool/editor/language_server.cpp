#include "tool/editor/language_server.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "tool/editor/file_uri.h"

namespace kelmora {
namespace {

constexpr int notInitialised = -32002;

TextPosition positionIn(const Json& json) {
    const auto number = [&](const char* key) {
        const auto value = json.at(key).get<std::int64_t>();
        return static_cast<std::uint32_t>(std::clamp<std::int64_t>(value, 0, 0x7FFFFFFF));
    };
    return {number("line"), number("character")};
}

// One change of a text: a piece of it, or all.
void applyChange(std::string& text, const Json& change) {
    const auto fresh = change.at("text").get<std::string>();
    if (!change.contains("range")) {
        text = fresh;
        return;
    }
    const TextPositions positions(text);
    const std::size_t begin = positions.offset(positionIn(change.at("range").at("start")));
    const std::size_t end = positions.offset(positionIn(change.at("range").at("end")));
    text.replace(begin, std::max(begin, end) - begin, fresh);
}

Json capabilities() {
    return {{"textDocumentSync", {{"openClose", true}, {"change", 2}, {"save", false}}},
            {"completionProvider", {{"triggerCharacters", {"\"", "'"}}, {"resolveProvider", true}}},
            {"hoverProvider", true},
            {"definitionProvider", true},
            {"referencesProvider", true},
            {"documentHighlightProvider", true},
            {"renameProvider", {{"prepareProvider", true}}},
            {"documentSymbolProvider", true},
            {"documentFormattingProvider", true}};
}

}  // namespace

LanguageServer::LanguageServer(Runtime& runtime, const WordBook& words, Send send)
    : workspace_(runtime), words_(words), send_(std::move(send)) {}

void LanguageServer::refuse(const std::string& reason) {
    send_(rpcFailure(nullptr, rpcParseError, reason));
}

void LanguageServer::handle(std::string_view message) {
    const Json json = parseMessage(message);
    if (json.is_discarded()) {
        refuse("no JSON");
        return;
    }
    handleJson(json);
}

void LanguageServer::handleJson(const Json& message) {
    const auto method = message.is_object() ? message.find("method") : message.end();
    if (!message.is_object() || (method != message.end() && !method->is_string())) {
        send_(rpcFailure(nullptr, rpcInvalidRequest, "no message of the protocol"));
        return;
    }
    if (method == message.end()) return;  // an answer to what we asked
    const auto given = message.find("params");
    const Json params = given == message.end() ? Json::object() : *given;
    const auto id = message.find("id");
    const bool isRequest = id != message.end() && (id->is_string() || id->is_number());
    const auto fail = [&](int code, const std::string& words) {
        if (isRequest) send_(rpcFailure(*id, code, words));
    };
    try {
        if (isRequest) {
            send_(rpcResult(*id, answer(method->get<std::string>(), params)));
        } else {
            notify(method->get<std::string>(), params);
        }
    } catch (const RpcError& error) {
        fail(error.code(), error.what());
    } catch (const Json::exception&) {
        fail(rpcInvalidParams, "the request's parameters make no sense");
    } catch (const std::exception& error) {
        fail(rpcInternalError, error.what());
    }
}

Json LanguageServer::answer(const std::string& method, const Json& params) {
    static const std::map<std::string_view, Request> requests{
        {"shutdown", &LanguageServer::shutDown},
        {"textDocument/completion", &LanguageServer::completion},
        {"completionItem/resolve", &LanguageServer::resolvedCompletion},
        {"textDocument/hover", &LanguageServer::hover},
        {"textDocument/definition", &LanguageServer::definition},
        {"textDocument/references", &LanguageServer::references},
        {"textDocument/documentHighlight", &LanguageServer::highlights},
        {"textDocument/prepareRename", &LanguageServer::preparedRename},
        {"textDocument/rename", &LanguageServer::rename},
        {"textDocument/documentSymbol", &LanguageServer::outline},
        {"textDocument/formatting", &LanguageServer::formatting},
    };
    if (method == "initialize") return initialise(params);
    if (!isInitialised_) throw RpcError(notInitialised, "the server was not initialised");
    if (wasShutDown_) throw RpcError(rpcInvalidRequest, "the server was shut down");
    const auto request = requests.find(method);
    if (request == requests.end()) throw RpcError(rpcMethodNotFound, "unknown method " + method);
    return (this->*request->second)(params);
}

void LanguageServer::notify(const std::string& method, const Json& params) {
    static const std::map<std::string_view, Notification> notifications{
        {"initialized", &LanguageServer::initialised},
        {"textDocument/didOpen", &LanguageServer::opened},
        {"textDocument/didChange", &LanguageServer::changed},
        {"textDocument/didClose", &LanguageServer::closed},
        {"workspace/didChangeWatchedFiles", &LanguageServer::filesChanged},
    };
    if (method == "exit") {
        isOver_ = true;
        return;
    }
    const auto notification = notifications.find(method);
    if (isInitialised_ && notification != notifications.end()) (this->*notification->second)(params);
}

Json LanguageServer::initialise(const Json& params) {
    if (isInitialised_) throw RpcError(rpcInvalidRequest, "the server is initialised");
    const Json::json_pointer watching("/capabilities/workspace/didChangeWatchedFiles/dynamicRegistration");
    watchesFiles_ = params.is_object() && params.value(watching, Json(false)) == true;
    isInitialised_ = true;
    return {{"capabilities", capabilities()}, {"serverInfo", {{"name", "vesper"}}}};
}

void LanguageServer::initialised(const Json&) {
    if (!watchesFiles_) return;
    const Json options{{"watchers", {{{"globPattern", "**/*.vs"}}}}};
    send_({{"jsonrpc", "2.0"},
           {"id", "watch"},
           {"method", "client/registerCapability"},
           {"params",
            {{"registrations",
              {{{"id", "watch"},
                {"method", "workspace/didChangeWatchedFiles"},
                {"registerOptions", options}}}}}}});
}

Json LanguageServer::shutDown(const Json&) {
    wasShutDown_ = true;
    return nullptr;
}

// --- What is open ---

std::string LanguageServer::uriOf(const std::string& path) const {
    const auto open = uris_.find(path);
    return open == uris_.end() ? uriOfPath(path) : open->second;
}

std::string LanguageServer::pathIn(const Json& params) const {
    const auto uri = params.at("textDocument").at("uri").get<std::string>();
    const std::string path = pathOfUri(uri);
    if (path.empty()) throw RpcError(rpcInvalidParams, "no address of a file: " + uri);
    return std::filesystem::path(path).lexically_normal().make_preferred().string();
}

QueryPlace LanguageServer::placeIn(const Json& params) const {
    const std::string path = pathIn(params);
    const ScriptProject* project = workspace_.projectOf(path);
    const SourceSymbols* symbols = project ? project->symbols().find(path) : nullptr;
    if (!symbols) throw RpcError(rpcInvalidParams, "no VesperScript that is open: " + path);
    const auto position = params.find("position");
    const std::size_t offset =
        position == params.end() ? 0 : TextPositions(symbols->source()).offset(positionIn(*position));
    return {*project, *symbols, path, offset};
}

void LanguageServer::opened(const Json& params) {
    const std::string path = pathIn(params);
    const Json& document = params.at("textDocument");
    workspace_.set(path,
                   {document.at("text").get<std::string>(), document.value("version", std::int64_t{0})});
    uris_[path] = document.at("uri").get<std::string>();
    hasChanged_ = true;
}

void LanguageServer::changed(const Json& params) {
    const std::string path = pathIn(params);
    const OpenScript* open = workspace_.find(path);
    if (!open) return;
    OpenScript script = *open;
    for (const Json& change : params.at("contentChanges")) applyChange(script.text, change);
    script.version = params.at("textDocument").value("version", script.version);
    workspace_.set(path, std::move(script));
    hasChanged_ = true;
}

void LanguageServer::closed(const Json& params) {
    const std::string path = pathIn(params);
    if (!workspace_.find(path)) return;
    workspace_.close(path);
    publish(path, Json::array());
    published_.erase(path);
    uris_.erase(path);
    hasChanged_ = true;
}

void LanguageServer::filesChanged(const Json& params) {
    for (const Json& change : params.at("changes"))
        workspace_.fileChanged(pathIn({{"textDocument", change}}));
    hasChanged_ = true;
}

void LanguageServer::idle() {
    if (!hasChanged_) return;
    hasChanged_ = false;
    const auto found = workspace_.check();
    for (const auto& [path, script] : workspace_.openScripts()) {
        const auto faults = found.find(path);
        publish(path, diagnosticsJson(script.text,
                                      faults == found.end() ? std::vector<Diagnostic>() : faults->second));
    }
}

void LanguageServer::publish(const std::string& path, const Json& diagnostics) {
    const OpenScript* open = workspace_.find(path);
    Json params{{"uri", uriOf(path)}, {"diagnostics", diagnostics}};
    if (open) params["version"] = open->version;
    // Those of a script that did not change may be the same still.
    std::string& last = published_[path];
    std::string text = params.dump(-1, ' ', false, Json::error_handler_t::replace);
    if (text == last) return;
    last = std::move(text);
    send_({{"jsonrpc", "2.0"}, {"method", "textDocument/publishDiagnostics"}, {"params", std::move(params)}});
}

// --- Requests ---

Json LanguageServer::completion(const Json& params) {
    return completionAt(placeIn(params), words_);
}

Json LanguageServer::resolvedCompletion(const Json& params) {
    return completionDocumented(params, words_);
}

Json LanguageServer::hover(const Json& params) {
    return hoverAt(placeIn(params), words_);
}

Json LanguageServer::definition(const Json& params) {
    const QueryPlace place = placeIn(params);
    return locationsJson(place, place.project.symbols().definitions(place.path, place.offset), *this);
}

Json LanguageServer::references(const Json& params) {
    const QueryPlace place = placeIn(params);
    return locationsJson(place, place.project.symbols().references(place.path, place.offset), *this);
}

Json LanguageServer::highlights(const Json& params) {
    const QueryPlace place = placeIn(params);
    std::vector<SourceSpan> spans = place.project.symbols().references(place.path, place.offset);
    std::erase_if(spans, [&](const SourceSpan& span) { return span.path != place.path; });
    Json found = Json::array();
    for (const Json& location : locationsJson(place, spans, *this))
        found.push_back({{"range", location.at("range")}});
    return found;
}

Json LanguageServer::preparedRename(const Json& params) {
    const QueryPlace place = placeIn(params);
    const auto span = place.project.symbols().renameable(place.path, place.offset);
    if (!span) return nullptr;
    return rangeJson(TextPositions(place.symbols.source()), span->begin, span->end);
}

Json LanguageServer::rename(const Json& params) {
    return renameAt(placeIn(params), params.at("newName").get<std::string>(), *this);
}

Json LanguageServer::outline(const Json& params) {
    return outlineOf(placeIn(params).symbols);
}

Json LanguageServer::formatting(const Json& params) {
    return formattingOf(placeIn(params).symbols.source());
}

}  // namespace kelmora
