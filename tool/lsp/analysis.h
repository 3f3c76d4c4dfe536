#pragma once

#include "findings.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace lsp
{

// A package file whose text in the editor counts, not that on the disk.
struct PackageText {
    std::string name; // as a use statement asks for it
    std::string path;
    std::shared_ptr<const std::string> text;
};

struct Job {
    uint64_t number = 0; // given by the analysis
    std::string uri;
    std::string path;
    int64_t version = 0;
    std::shared_ptr<const std::string> text;
    ReadOptions read;
    std::map<std::string, Severity> rules; // as the settings have them
    bool excluded = false;                 // by the settings: nothing is shown
    std::string settings_problem;          // why the settings do not apply
    std::vector<PackageText> packages;
};

// What the checks have made of an instruction: its register too where the standard implies it.
struct InstructionFacts {
    std::string name;
    std::vector<std::string> patterns;
    std::string register_name;
    int32_t register_length = 0; // 0: no register, -1: not known
    std::string capture;
};

// What is known once a description has been checked, for a person to ask.
struct DeviceFacts {
    std::string standard;
    std::vector<InstructionFacts> instructions;
    std::vector<std::pair<std::string, std::string>> cells; // name, package or empty
    std::vector<std::string> package_files;
    uint32_t checked = 0;
};

// The findings on one version of a text. The model is given up: a server keeps many files open.
struct Findings {
    struct Place {
        std::string file;
        int32_t line, column, end_line, end_column;
    };
    struct Edit {
        Place place;
        std::string text;
    };
    struct Related {
        Place place;
        std::string text;
    };
    struct Finding {
        Severity severity;
        std::string rule;
        Place place;
        std::string text;
        std::string hint;
        std::string fix;
        std::vector<Edit> edits;
        bool sure;
        std::vector<Related> related;
        int32_t because;
        uint32_t count;
        bool suppressed;
    };

    std::string uri;
    int64_t version = 0;
    bool as_read = false; // the library's messages alone; those of the diagnosis follow
    bool excluded = false;
    std::string settings_problem;
    std::vector<Finding> all; // those that the settings leave on
    DeviceFacts facts;
    std::string unchecked;
};

// Findings of one text, on this thread. NULL when it was cancelled.
std::shared_ptr<const Findings> diagnose(const Job &job, bool as_read,
                                         const std::function<bool()> &cancelled = {});

// Diagnoses texts in the background, the newest text of each file: as it is read, which is fast,
// and with the fixes once nothing else waits. A new text ends the search for fixes, of whatever
// file: one model is in memory at a time.
class Analysis
{
  public:
    using Done = std::function<void(std::shared_ptr<const Findings>)>;

    // `to` gets the findings on the thread of the analysis. It gets NULL once after
    // notify_when_idle(), when nothing is left to do: on the thread of the analysis, or at once on
    // the caller's.
    explicit Analysis(Done to);
    ~Analysis() { stop(); }
    void stop();
    void start(Job job);
    void forget(const std::string &uri);
    void notify_when_idle();

  private:
    using Jobs = std::map<std::string, Job>; // by URI

    void run();
    bool take(Job &job, bool &as_read);
    void finish(Job job, bool is_to_be_mended);
    bool is_called_off(const Job &job);

    Done done;
    std::mutex lock;
    std::condition_variable wake;
    Jobs unread;
    Jobs unmended;
    std::map<std::string, uint64_t> newest; // number of the job of a file that counts
    uint64_t jobs = 0;
    bool working = false;
    bool idle_asked_for = false;
    bool stopping = false;
    std::thread thread;
};

} // namespace lsp
