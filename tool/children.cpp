#include "children.h"

#include "console.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <malloc.h>
#include <map>
#include <optional>
#include <poll.h>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

constexpr int KEPT_MEMORY = 64 << 20;
constexpr size_t MOST_AT_HAND = 8; // files of one child

// --------------------------------------------------------------- a report on its way to the parent

static void put_number(std::string &to, uint32_t number)
{
    to.append(reinterpret_cast<const char *>(&number), sizeof number);
}

static void put_text(std::string &to, const std::string &text)
{
    put_number(to, static_cast<uint32_t>(text.size()));
    to += text;
}

static uint32_t take_number(std::string_view &from)
{
    uint32_t number;
    std::memcpy(&number, from.data(), sizeof number);
    from.remove_prefix(sizeof number);
    return number;
}

static std::string take_text(std::string_view &from)
{
    const uint32_t length = take_number(from);
    std::string text(from.substr(0, length));
    from.remove_prefix(length);
    return text;
}

static std::string packed(const FileReport &report)
{
    std::string body;
    put_text(body, report.path);
    put_text(body, report.device);
    put_number(body, report.checks);
    put_number(body, static_cast<uint32_t>(report.state));
    put_number(body, static_cast<uint32_t>(report.syntax_errors));
    put_number(body, report.passed);
    put_text(body, report.extract);
    put_number(body, static_cast<uint32_t>(report.messages.size()));
    for (const Message &message : report.messages) {
        put_number(body, static_cast<uint32_t>(message.level));
        put_number(body, message.verbosity);
        put_number(body, static_cast<uint32_t>(message.line));
        put_text(body, message.file);
        put_text(body, message.rule);
        put_text(body, message.text);
    }
    std::string whole;
    put_text(whole, body);
    return whole;
}

static FileReport unpacked(std::string_view body)
{
    FileReport report;
    report.path = take_text(body);
    report.device = take_text(body);
    report.checks = take_number(body);
    report.state = static_cast<FileState>(take_number(body));
    report.syntax_errors = static_cast<int32_t>(take_number(body));
    report.passed = take_number(body) != 0;
    report.extract = take_text(body);
    report.messages.resize(take_number(body));
    for (Message &message : report.messages) {
        message.level = static_cast<int32_t>(take_number(body));
        message.verbosity = take_number(body);
        message.line = static_cast<int32_t>(take_number(body));
        message.file = take_text(body);
        message.rule = take_text(body);
        message.text = take_text(body);
    }
    return report;
}

// Takes one whole report off the start; nothing while it is incomplete.
static std::optional<FileReport> next_report(std::string &received)
{
    std::string_view from = received;
    if (from.size() < sizeof(uint32_t))
        return {};
    const size_t length = take_number(from);
    if (from.size() < length)
        return {};
    FileReport report = unpacked(from.substr(0, length));
    received.erase(0, sizeof(uint32_t) + length);
    return report;
}

static bool write_all(int to, const void *data, size_t size)
{
    const char *at = static_cast<const char *>(data);
    while (size > 0) {
        const ssize_t written = write(to, at, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        at += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

// ------------------------------------------------------------------------------------- the child

[[noreturn]] static void serve(int requests, int results, const std::vector<std::string> &files,
                               const CheckJob &job)
{
    // The memory of one file serves the next.
    mallopt(M_TRIM_THRESHOLD, KEPT_MEMORY);
    mallopt(M_TOP_PAD, KEPT_MEMORY / 64);
    std::string bytes;
    const auto send = [&] { return write_all(results, bytes.data(), bytes.size()); };
    uint32_t indexes[MOST_AT_HAND];
    for (ssize_t got; (got = read(requests, indexes, sizeof indexes)) > 0;) {
        for (size_t i = 0; i < static_cast<size_t>(got) / sizeof *indexes; i++) {
            FileReport report;
            report.path = files[indexes[i]];
            if_process_ends([&] {
                bytes += packed(report);
                return send() ? 0 : 1;
            });
            check_file(files[indexes[i]], job, report);
            if_process_ends({});
            bytes += packed(report);
        }
        // One way through the parent for all of them.
        if (!send())
            break;
        bytes.clear();
    }
    _exit(0);
}

// ------------------------------------------------------------------------------------ the parent

namespace
{

struct Child {
    pid_t pid = -1;
    int requests = -1;
    int results = -1;
    std::deque<size_t> files; // at work on, or to follow
    std::string received;
    bool reported_end = false; // of its process, which the end of its results will follow
};

class Run
{
  public:
    Run(const std::vector<std::string> &all, const CheckJob &how, const ChildEvents &whom)
        : files(all), job(how), events(whom)
    {
    }
    ~Run();
    Run(const Run &) = delete;
    Run &operator=(const Run &) = delete;

    void start(size_t processes);
    bool step();

  private:
    void spawn(Child &child);
    void stop(Child &child);
    size_t files_left() const { return again.size() + files.size() - next_file; }
    size_t take_file();
    void give_work(Child &child);
    void child_ended(Child &child);
    void file_done(Child &child, FileReport report);
    void hand_over();

    const std::vector<std::string> &files;
    const CheckJob &job;
    const ChildEvents &events;
    std::vector<Child> children;
    std::map<size_t, FileReport> finished; // not handed over yet: an earlier file is missing
    size_t next_file = 0;
    std::deque<size_t> again; // one of them may have ended its process
    size_t next_report_file = 0;
    size_t done = 0;
    bool stopped = false;
};

} // namespace

void Run::spawn(Child &child)
{
    int requests[2];
    int results[2];
    if (pipe(requests) != 0)
        return;
    if (pipe(results) != 0) {
        close(requests[0]);
        close(requests[1]);
        return;
    }
    // What is buffered is the parent's to write.
    std::fflush(stdout);
    std::fflush(stderr);
    child.pid = fork();
    if (child.pid == 0) {
        close(requests[1]);
        close(results[0]);
        for (const Child &other : children)
            for (int end : {other.requests, other.results})
                if (end >= 0)
                    close(end);
        serve(requests[0], results[1], files, job);
    }
    close(requests[0]);
    close(results[1]);
    child.requests = requests[1];
    child.results = results[0];
    if (child.pid < 0)
        stop(child);
}

void Run::stop(Child &child)
{
    for (int *end : {&child.requests, &child.results}) {
        if (*end >= 0)
            close(*end);
        *end = -1;
    }
}

size_t Run::take_file()
{
    size_t index = next_file;
    if (again.empty()) {
        next_file++;
    } else {
        index = again.front();
        again.pop_front();
    }
    if (events.progress)
        events.progress(done, files[index]);
    return index;
}

// While there are many files a child gets some at a time and need not wait for this process; at
// the end no file waits for a child while another one is idle. Files that were lost with a child
// are read one by one, to find out which it was.
void Run::give_work(Child &child)
{
    const bool many = again.empty() && files_left() > 2 * MOST_AT_HAND * children.size();
    if (child.files.size() > (many ? MOST_AT_HAND / 2 : 0))
        return;
    uint32_t indexes[MOST_AT_HAND];
    size_t count = 0;
    for (; files_left() && child.files.size() < (many ? MOST_AT_HAND : 1); count++) {
        child.files.push_back(take_file());
        indexes[count] = static_cast<uint32_t>(child.files.back());
    }
    // A child that has ended shows as the end of its results.
    if (count)
        write_all(child.requests, indexes, count * sizeof *indexes);
    else
        stop(child);
}

// Reports go out in the order of the files, whichever child was first.
void Run::hand_over()
{
    for (auto first = finished.begin();
         !stopped && first != finished.end() && first->first == next_report_file;
         first = finished.begin()) {
        stopped = !events.report(first->second);
        finished.erase(first);
        next_report_file++;
    }
}

void Run::file_done(Child &child, FileReport report)
{
    finished.emplace(child.files.front(), std::move(report));
    child.files.pop_front();
    done++;
    hand_over();
}

static std::string how_it_ended(pid_t pid)
{
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR)
        ;
    if (WIFSIGNALED(status))
        return std::string("the process that read the file was ended by a signal: ") +
               strsignal(WTERMSIG(status));
    return "the process that read the file ended";
}

void Run::child_ended(Child &child)
{
    stop(child);
    const std::string reason = how_it_ended(child.pid);
    child.pid = -1;
    if (child.files.size() == 1 && !child.reported_end) {
        FileReport report;
        report.path = files[child.files.front()];
        report.end_reason = reason;
        file_done(child, std::move(report));
    }
    child.reported_end = false;
    again.insert(again.end(), child.files.begin(), child.files.end());
    child.files.clear();
    child.received.clear();
    if (files_left()) {
        spawn(child);
        if (child.results >= 0)
            give_work(child);
    }
}

void Run::start(size_t processes)
{
    children.resize(std::min(processes, files.size()));
    for (Child &child : children) {
        spawn(child);
        if (child.results >= 0)
            give_work(child);
    }
}

bool Run::step()
{
    std::vector<pollfd> polls;
    std::vector<Child *> asked;
    for (Child &child : children)
        if (child.results >= 0) {
            polls.push_back({child.results, POLLIN, 0});
            asked.push_back(&child);
        }
    if (polls.empty() || stopped)
        return false;
    if (poll(polls.data(), polls.size(), -1) < 0)
        return errno == EINTR;
    for (size_t i = 0; i < polls.size(); i++) {
        if (!polls[i].revents)
            continue;
        Child &child = *asked[i];
        char buffer[1 << 16];
        const ssize_t got = read(child.results, buffer, sizeof buffer);
        if (got <= 0) {
            child_ended(child);
            continue;
        }
        child.received.append(buffer, static_cast<size_t>(got));
        while (std::optional<FileReport> report = next_report(child.received)) {
            child.reported_end = report->state == FileState::ENDED;
            if (child.reported_end)
                report->end_reason = "the process that read the file ended";
            file_done(child, std::move(*report));
        }
        if (!child.reported_end)
            give_work(child);
    }
    return true;
}

Run::~Run()
{
    for (Child &child : children) {
        stop(child);
        if (child.pid > 0)
            waitpid(child.pid, nullptr, 0);
    }
    // No process could be started: the files that are left count as not read.
    for (; !stopped && next_report_file < files.size(); next_report_file++) {
        FileReport report;
        report.path = files[next_report_file];
        report.end_reason = "no process could be started for it";
        stopped = !events.report(report);
    }
}

void check_in_children(const std::vector<std::string> &files, const CheckJob &job, size_t processes,
                       const ChildEvents &events)
{
    // The copy of standard input is there for all children.
    if (std::find(files.begin(), files.end(), "-") != files.end())
        standard_input_file();
    if (processes == 0)
        processes = std::max(std::thread::hardware_concurrency(), 1u);
    Run run(files, job, events);
    run.start(processes);
    while (run.step())
        ;
}
