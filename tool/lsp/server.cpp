// The language server: messages in, answers and findings out. One thread reads, one diagnoses, and
// this one answers, in the order of the messages.

#include "lsp/server.h"

#include "lsp/features.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#ifdef __GLIBC__
#include <malloc.h>
#endif
#include <mutex>
#include <set>
#include <thread>

namespace lsp
{

namespace
{

// What waits to be dealt with.
struct Event {
    std::optional<json> message = {};
    std::shared_ptr<const Findings> findings = nullptr;
    bool malformed = false;
    bool settled = false;       // all texts have their findings
    bool look_at_files = false; // nothing came for a while
    bool end = false;           // of the input
};

constexpr std::chrono::seconds FILES_ARE_LOOKED_AT_EVERY{1};

class Server
{
  public:
    Server(FILE *source, FILE *sink)
        : from(source), to(sink), analysis([this](std::shared_ptr<const Findings> found) {
              const bool settled = !found;
              push({.findings = std::move(found), .settled = settled});
          })
    {
    }
    int run();

  private:
    using Request = json (Server::*)(const json &params);
    using Notice = void (Server::*)(const json &params);
    template <typename Handler> struct Row {
        const char *method;
        Handler handler;
    };
    static const Row<Request> REQUESTS[];
    static const Row<Notice> NOTICES[];

    void read();
    void push(Event event);
    bool nothing_waits();
    Event next();
    void take(const json &message);
    void request(const json &message);
    void answer(const json &id, json result);
    void refuse(const json &id, int code, const std::string &text);
    void answer_settled();
    void send(json message);
    bool is_cancelled(const json &id);

    json initialize(const json &params);
    json shutdown(const json &params);
    json hover(const json &params);
    json definition(const json &params);
    json references(const json &params);
    json highlight(const json &params);
    json prepare_rename(const json &params);
    json rename(const json &params);
    json document_symbols(const json &params);
    json folding(const json &params);
    json selection(const json &params);
    json completion(const json &params);
    json tokens(const json &params);
    json tokens_range(const json &params);
    json formatting(const json &params);
    json range_formatting(const json &params);
    json code_action(const json &params);

    void initialized(const json &params);
    void opened(const json &params);
    void changed(const json &params);
    void closed(const json &params);
    void configuration_changed(const json &params);
    void files_changed(const json &params);

    const Document &document(const json &params);
    uint32_t offset(const json &params);
    void settings(const json &given);
    void diagnose_again();
    void look_at_files();
    void publish(const std::shared_ptr<const Findings> &found);

    FILE *from;
    FILE *to;
    enum class State : uint8_t { NEW, RUNNING, SHUT_DOWN } state = State::NEW;
    bool exited = false;
    bool snippets = false;
    bool watches_files = false;
    Workspace workspace;
    std::map<std::string, size_t> published; // by URI: hash of what the client shows now

    std::mutex lock;
    std::condition_variable wake;
    std::deque<Event> events;
    std::set<std::string> cancelled; // ids of requests, as JSON
    std::vector<json> wait_for_all;  // ids of requests that are answered when all is settled
    Analysis analysis;
};

} // namespace

const Server::Row<Server::Request> Server::REQUESTS[] = {
    {"initialize", &Server::initialize},
    {"shutdown", &Server::shutdown},
    {"textDocument/hover", &Server::hover},
    {"textDocument/definition", &Server::definition},
    {"textDocument/references", &Server::references},
    {"textDocument/documentHighlight", &Server::highlight},
    {"textDocument/prepareRename", &Server::prepare_rename},
    {"textDocument/rename", &Server::rename},
    {"textDocument/documentSymbol", &Server::document_symbols},
    {"textDocument/foldingRange", &Server::folding},
    {"textDocument/selectionRange", &Server::selection},
    {"textDocument/completion", &Server::completion},
    {"textDocument/semanticTokens/full", &Server::tokens},
    {"textDocument/semanticTokens/range", &Server::tokens_range},
    {"textDocument/formatting", &Server::formatting},
    {"textDocument/rangeFormatting", &Server::range_formatting},
    {"textDocument/codeAction", &Server::code_action},
};

const Server::Row<Server::Notice> Server::NOTICES[] = {
    {"initialized", &Server::initialized},
    {"textDocument/didOpen", &Server::opened},
    {"textDocument/didChange", &Server::changed},
    {"textDocument/didClose", &Server::closed},
    {"workspace/didChangeConfiguration", &Server::configuration_changed},
    {"workspace/didChangeWatchedFiles", &Server::files_changed},
};

// --------------------------------------------------------------------------------------- messages

void Server::push(Event event)
{
    {
        const std::lock_guard hold(lock);
        events.push_back(std::move(event));
    }
    wake.notify_one();
}

bool Server::nothing_waits()
{
    const std::lock_guard hold(lock);
    return events.empty();
}

Event Server::next()
{
    std::unique_lock hold(lock);
    if (events.empty())
        cancelled.clear(); // the requests have been answered already
    const auto has_event = [this] { return !events.empty(); };
    // Where the client cannot watch files, somebody else has to.
    if (watches_files || state != State::RUNNING)
        wake.wait(hold, has_event);
    else if (!wake.wait_for(hold, FILES_ARE_LOOKED_AT_EVERY, has_event))
        return {.look_at_files = true};
    Event event = std::move(events.front());
    events.pop_front();
    return event;
}

// On a thread of its own, so that a request can be called off while it waits.
void Server::read()
{
    while (std::optional<std::string> body = read_message(from)) {
        json message = json::parse(*body, nullptr, false);
        if (message.is_discarded()) {
            push({.malformed = true});
        } else if (message.is_object() && message.value("method", json()) == "$/cancelRequest" &&
                   message.contains("params") && message["params"].contains("id")) {
            const std::lock_guard hold(lock);
            cancelled.insert(message["params"]["id"].dump());
        } else {
            push({.message = std::move(message)});
        }
    }
    push({.end = true});
}

bool Server::is_cancelled(const json &id)
{
    const std::lock_guard hold(lock);
    return cancelled.erase(id.dump()) != 0;
}

void Server::send(json message) { write_message(to, message_body(std::move(message))); }

void Server::answer(const json &id, json result)
{
    send({{"id", id}, {"result", std::move(result)}});
}

void Server::refuse(const json &id, int code, const std::string &text)
{
    send({{"id", id}, {"error", {{"code", code}, {"message", text}}}});
}

void Server::answer_settled()
{
    for (const json &id : std::exchange(wait_for_all, {}))
        answer(id, nullptr);
}

void Server::request(const json &message)
{
    const json &id = message["id"];
    const auto method = message["method"].get<std::string>();
    const json params = message.value("params", json::object());
    if (is_cancelled(id))
        return refuse(id, REQUEST_CANCELLED, "cancelled");
    if (state == State::NEW && method != "initialize")
        return refuse(id, SERVER_NOT_INITIALIZED, "initialize comes first");
    if (state != State::NEW && method == "initialize")
        return refuse(id, INVALID_REQUEST, "initialize comes once");
    if (state == State::SHUT_DOWN)
        return refuse(id, INVALID_REQUEST, "the server has been shut down");
    if (method == "tarnlet/settled") {
        wait_for_all.push_back(id);
        return analysis.notify_when_idle();
    }
    for (const Row<Request> &row : REQUESTS)
        if (method == row.method) {
            try {
                return answer(id, (this->*row.handler)(params));
            } catch (const RequestError &error) {
                return refuse(id, error.code, error.what());
            } catch (const json::exception &error) {
                return refuse(id, INVALID_PARAMS, error.what());
            } catch (const std::exception &error) {
                return refuse(id, INTERNAL_ERROR, error.what());
            }
        }
    refuse(id, METHOD_NOT_FOUND, "there is no method '" + method + "'");
}

void Server::take(const json &message)
{
    if (!message.is_object() || (!message.contains("method") && !message.contains("id")))
        return refuse(nullptr, INVALID_REQUEST, "this is no message of the protocol");
    if (!message.contains("method"))
        return; // the answer to a request of ours
    if (!message["method"].is_string())
        return refuse(message.value("id", json()), INVALID_REQUEST, "a method is a text");
    if (message.contains("id"))
        return request(message);
    const auto method = message["method"].get<std::string>();
    if (method == "exit") {
        exited = true;
        return;
    }
    if (state != State::RUNNING)
        return;
    for (const Row<Notice> &row : NOTICES)
        if (method == row.method) {
            try {
                (this->*row.handler)(message.value("params", json::object()));
            } catch (const std::exception &error) {
                // No answer can be given to a notification.
                send({{"method", "window/logMessage"},
                      {"params", {{"type", 1}, {"message", method + ": " + error.what()}}}});
            }
            return;
        }
}

int Server::run()
{
    // It waits for input that may never come, so the end of the process ends it.
    std::thread([this] { read(); }).detach();
    while (!exited) {
        if (nothing_waits())
            workspace.get_ready();
        const Event event = next();
        if (event.end)
            break;
        if (event.malformed)
            refuse(nullptr, PARSE_ERROR, "this is no JSON");
        else if (event.findings)
            publish(event.findings);
        else if (event.settled)
            answer_settled();
        else if (event.look_at_files)
            look_at_files();
        else
            take(*event.message);
    }
    analysis.stop();
    return exited && state == State::SHUT_DOWN ? 0 : 1;
}

// ------------------------------------------------------------------------------- start and end

static bool has(const json &capabilities, const char *pointer)
{
    const json::json_pointer at(pointer);
    return capabilities.contains(at) && capabilities[at] == true;
}

json Server::initialize(const json &params)
{
    const json capabilities = params.value("capabilities", json::object());
    const json::json_pointer encodings("/general/positionEncodings");
    if (capabilities.contains(encodings))
        for (const json &encoding : capabilities[encodings])
            if (encoding == "utf-8")
                workspace.encoding = Encoding::UTF8;
    snippets = has(capabilities, "/textDocument/completion/completionItem/snippetSupport");
    watches_files = has(capabilities, "/workspace/didChangeWatchedFiles/dynamicRegistration");
    settings(params.value("initializationOptions", json::object()));
    state = State::RUNNING;
    return {
        {"serverInfo", {{"name", "tarnlet"}, {"version", TARNLET_VERSION}}},
        {"capabilities",
         {{"positionEncoding", workspace.encoding == Encoding::UTF8 ? "utf-8" : "utf-16"},
          {"textDocumentSync", {{"openClose", true}, {"change", 2}}},
          {"hoverProvider", true},
          {"definitionProvider", true},
          {"referencesProvider", true},
          {"documentHighlightProvider", true},
          {"renameProvider", {{"prepareProvider", true}}},
          {"documentSymbolProvider", true},
          {"foldingRangeProvider", true},
          {"selectionRangeProvider", true},
          {"completionProvider", {{"triggerCharacters", {"\"", "(", ",", " "}}}},
          {"semanticTokensProvider",
           {{"legend", semantic_tokens_legend()}, {"full", true}, {"range", true}}},
          {"documentFormattingProvider", true},
          {"documentRangeFormattingProvider", true},
          {"codeActionProvider", {{"codeActionKinds", {"quickfix", "source.fixAll.tarnlet"}}}}}}};
}

void Server::initialized(const json &)
{
    if (!watches_files)
        return;
    const json watchers = {{{"globPattern", "**/*.{all,ALL}"}},
                           {{"globPattern", "**/.tarnlet.toml"}}};
    send({{"id", "watch"},
          {"method", "client/registerCapability"},
          {"params",
           {{"registrations",
             {{{"id", "watch"},
               {"method", "workspace/didChangeWatchedFiles"},
               {"registerOptions", {{"watchers", watchers}}}}}}}}});
}

json Server::shutdown(const json &)
{
    state = State::SHUT_DOWN;
    return nullptr;
}

void Server::settings(const json &given)
{
    if (!given.is_object())
        return;
    ReadOptions &settings = workspace.client_settings;
    settings = {};
    settings.package = given.value("package", "");
    settings.strict = given.value("strict", false);
    settings.package_dirs = given.value("packageFolders", std::vector<std::string>());
}

// ------------------------------------------------------------------------------------------ texts

const Document &Server::document(const json &params)
{
    const auto uri = params.at("textDocument").at("uri").get<std::string>();
    const Document *document = workspace.open_document(uri);
    if (!document)
        throw RequestError(INVALID_PARAMS, "'" + uri + "' is not open");
    return *document;
}

uint32_t Server::offset(const json &params)
{
    return document(params).offset(params.at("position"));
}

// A package file that is open counts in all texts that use it.
void Server::diagnose_again()
{
    for (const auto &[uri, document] : workspace.open_documents())
        analysis.start(workspace.job_for(document));
}

void Server::opened(const json &params)
{
    const json &item = params.at("textDocument");
    const Document &document =
        workspace.open(item.at("uri"), item.at("text"), item.value("version", int64_t{0}));
    if (workspace.is_package(document))
        diagnose_again();
    else
        analysis.start(workspace.job_for(document));
}

void Server::changed(const json &params)
{
    const json &item = params.at("textDocument");
    const auto uri = item.at("uri").get<std::string>();
    Document *document = workspace.open_document(uri);
    if (!document)
        throw RequestError(INVALID_PARAMS, "'" + uri + "' is not open");
    document->change(params.at("contentChanges"));
    document->set_version(item.value("version", int64_t{0}));
    if (workspace.is_package(*document))
        diagnose_again();
    else
        analysis.start(workspace.job_for(*document));
}

void Server::closed(const json &params)
{
    const auto uri = params.at("textDocument").at("uri").get<std::string>();
    const Document *document = workspace.open_document(uri);
    const bool package = document && workspace.is_package(*document);
    workspace.close(uri);
    analysis.forget(uri);
    published.erase(uri);
    send({{"method", "textDocument/publishDiagnostics"},
          {"params", {{"uri", uri}, {"diagnostics", json::array()}}}});
    if (package)
        diagnose_again();
}

void Server::configuration_changed(const json &params)
{
    json given = params.value("settings", json::object());
    if (given.is_object() && given.contains("tarnlet"))
        given = given["tarnlet"];
    if (given.is_object() && !given.empty())
        settings(given);
    diagnose_again();
}

void Server::files_changed(const json &)
{
    workspace.forget_settings();
    diagnose_again();
}

void Server::look_at_files()
{
    if (workspace.files_have_changed())
        files_changed({});
}

void Server::publish(const std::shared_ptr<const Findings> &found)
{
    const Document *document = workspace.open_document(found->uri);
    if (!document || document->version() != found->version)
        return; // of a text that is no more
    for (const std::string &package : found->facts.package_files)
        workspace.note_package(package);
    // Where only settings or packages have changed, the findings shown stay until the diagnosis is
    // done.
    std::shared_ptr<const Findings> &known = workspace.findings[found->uri];
    if (found->as_read && !found->excluded && known && known->version == found->version &&
        !known->as_read)
        return;
    known = found;
    const std::string body = message_body({{"method", "textDocument/publishDiagnostics"},
                                           {"params",
                                            {{"uri", found->uri},
                                             {"version", found->version},
                                             {"diagnostics", diagnostics(*document, *found)}}}});
    const size_t hash = std::hash<std::string>()(body);
    if (std::exchange(published[found->uri], hash) != hash)
        write_message(to, body);
}

// --------------------------------------------------------------------------------------- requests

json Server::hover(const json &params)
{
    return lsp::hover(workspace, document(params), offset(params));
}

json Server::definition(const json &params)
{
    return lsp::definition(workspace, document(params), offset(params));
}

json Server::references(const json &params)
{
    const json context = params.value("context", json::object());
    return lsp::references(workspace, document(params), offset(params),
                           context.value("includeDeclaration", true));
}

json Server::highlight(const json &params) { return highlights(document(params), offset(params)); }

json Server::prepare_rename(const json &params)
{
    return lsp::prepare_rename(workspace, document(params), offset(params));
}

json Server::rename(const json &params)
{
    return lsp::rename(workspace, document(params), offset(params), params.at("newName"));
}

json Server::document_symbols(const json &params)
{
    return lsp::document_symbols(document(params));
}

json Server::folding(const json &params) { return folding_ranges(document(params)); }

json Server::selection(const json &params)
{
    return selection_ranges(document(params), params.at("positions"));
}

json Server::completion(const json &params)
{
    return lsp::completion(workspace, document(params), offset(params), snippets);
}

json Server::tokens(const json &params) { return semantic_tokens(document(params), 0, UINT32_MAX); }

json Server::tokens_range(const json &params)
{
    const Document &of = document(params);
    return semantic_tokens(of, of.offset(params.at("range").at("start")),
                           of.offset(params.at("range").at("end")));
}

json Server::formatting(const json &params)
{
    return lsp::formatting(workspace, document(params), 0, UINT32_MAX);
}

json Server::range_formatting(const json &params)
{
    const Document &of = document(params);
    const uint32_t begin = of.offset(params.at("range").at("start"));
    const uint32_t end = of.offset(params.at("range").at("end"));
    return lsp::formatting(workspace, of, of.line_of(begin),
                           of.line_of(end > begin ? end - 1 : end));
}

json Server::code_action(const json &params)
{
    return code_actions(workspace, document(params), params);
}

// Left to itself the heap keeps what it has once given back, and cuts small pieces from it: after
// some edits it is several times as large as what is in use.
static void give_large_blocks_back_at_once()
{
#ifdef __GLIBC__
    mallopt(M_MMAP_THRESHOLD, 1 << 20);
#endif
}

int serve(FILE *from, FILE *to)
{
    give_large_blocks_back_at_once();
    // Left to the end of the process: the reading thread may still wait for input.
    static auto *const server = new Server(from, to);
    return server->run();
}

} // namespace lsp
