#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "tool/editor/json_rpc.h"
#include "tool/editor/language_queries.h"
#include "tool/editor/script_workspace.h"

namespace kelmora {

// The server's side of the language server protocol, for VesperScript; of the guests' sources it tells the
// faults alone. Whatever arrives, nothing but `exit` ends it: what makes no sense is answered with an error.
class LanguageServer : private ScriptAddresses {
public:
    using Send = std::function<void(const Json&)>;

    // The runtime is one that registerForCheck prepared.
    LanguageServer(Runtime& runtime, const WordBook& words, Send send);

    void handle(std::string_view message);
    // A message that could not be read.
    void refuse(const std::string& reason);
    // What can wait until nothing else is to be done: faults of what has changed.
    void idle();

    bool isOver() const { return isOver_; }
    int exitCode() const { return wasShutDown_ ? 0 : 1; }

private:
    using Request = Json (LanguageServer::*)(const Json&);
    using Notification = void (LanguageServer::*)(const Json&);

    void handleJson(const Json& message);
    Json answer(const std::string& method, const Json& params);
    void notify(const std::string& method, const Json& params);
    std::string uriOf(const std::string& path) const override;
    std::string pathIn(const Json& params) const;
    QueryPlace placeIn(const Json& params) const;
    void publish(const std::string& path, const Json& diagnostics);

    Json initialise(const Json& params);
    Json shutDown(const Json& params);
    Json completion(const Json& params);
    Json resolvedCompletion(const Json& params);
    Json hover(const Json& params);
    Json definition(const Json& params);
    Json references(const Json& params);
    Json highlights(const Json& params);
    Json preparedRename(const Json& params);
    Json rename(const Json& params);
    Json outline(const Json& params);
    Json formatting(const Json& params);

    void initialised(const Json& params);
    void opened(const Json& params);
    void changed(const Json& params);
    void closed(const Json& params);
    void filesChanged(const Json& params);
    void ignored(const Json&) {}

    ScriptWorkspace workspace_;
    const WordBook& words_;
    Send send_;
    std::map<std::string, std::string> uris_;  // of what is open, as the editor writes them
    std::map<std::string, std::string> published_;
    bool isInitialised_ = false;
    bool watchesFiles_ = false;
    bool wasShutDown_ = false;
    bool isOver_ = false;
    bool hasChanged_ = false;
};

}  // namespace kelmora
