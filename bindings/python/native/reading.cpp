#include "reading.h"

#include "findings.h"
#include "rows.h"
#include "trees.h"

#include <chrono>

namespace
{

// Lists of folders as the two interfaces want them.
class Folders
{
  public:
    explicit Folders(const std::vector<std::string> &paths)
    {
        for (const std::string &path : paths)
            names.push_back(path.c_str());
        for (auto path = paths.rbegin(); path != paths.rend(); ++path)
            list = g_slist_prepend(list, const_cast<char *>(path->c_str()));
    }
    ~Folders() { g_slist_free(list); }
    Folders(const Folders &) = delete;
    Folders &operator=(const Folders &) = delete;

    std::vector<const char *> names;
    GSList *list = nullptr;
};

// Lets Control-C end a long reading.
class Interrupt
{
  public:
    static int32_t asked(void *self) { return static_cast<Interrupt *>(self)->has_come(); }

  private:
    bool has_come()
    {
        const auto now = std::chrono::steady_clock::now();
        if (now - last < std::chrono::milliseconds(50))
            return false;
        last = now;
        const py::gil_scoped_acquire acquired;
        return PyErr_CheckSignals() != 0;
    }

    std::chrono::steady_clock::time_point last = std::chrono::steady_clock::now();
};

} // namespace

static const char *package_of(const ReadOptions &options)
{
    return options.package ? options.package->c_str() : nullptr;
}

static uint32_t flags_of(const ReadOptions &options)
{
    return options.strict ? BSDL_FLAG_STRICT : 0;
}

// ------------------------------------------------------------------------ a reading of its own

// The library keeps the address of the context, so there is one that outlives every reading. The
// last error is kept for each thread.
static thread_local std::string last_error;

static void keep_error(void *, BsdlMessage *message)
{
    if (message->level == BSDL_LEVEL_ERROR)
        last_error = message->text;
}

static BsdlContext context = {keep_error, nullptr, 2};

using Handle = std::unique_ptr<Bsdl, void (*)(Bsdl *)>;

static Handle read_text(std::string_view text, const std::string &name, const ReadOptions &options,
                        uint32_t flags)
{
    const Folders folders(options.include);
    last_error.clear();
    return {readBsdlText(text.data(), text.size(), name.c_str(), package_of(options), folders.list,
                         flags, &context, nullptr, 0),
            bsdlRelease};
}

py::object read_idcodes(const py::bytes &text, const std::string &name)
{
    Json idcodes;
    {
        const std::string_view bytes = text;
        const py::gil_scoped_release released;
        const Handle handle = read_text(bytes, name, {}, BSDL_FLAG_FAST_READ);
        idcodes = idcodes_of(handle.get());
    }
    return tree_of(idcodes);
}

// The checks that an EBST file takes its values from. Empty, or what went wrong.
static std::string ebst_failure(Bsdl *bsdl, const std::string &path)
{
    bsdl_check(bsdl);
    if (bsdlIs1532(bsdl))
        bsdl_check_isc(bsdl);
    last_error.clear();
    const bool written = bsdlSetEbstFile(bsdl, path.c_str()) == BSDL_RESULT_OK &&
                         bsdlGenEbst(bsdl) == BSDL_RESULT_OK &&
                         bsdlCreateEbst(bsdl) == BSDL_RESULT_OK;
    return written ? "" : last_error.empty() ? "the EBST file was not written" : last_error;
}

void Reading::write_ebst(const std::string &path)
{
    const std::string text = fixed_text();
    std::string failure;
    {
        const py::gil_scoped_release released;
        const Handle handle = read_text(text, name, options, flags_of(options));
        failure = handle ? ebst_failure(handle.get(), path) : "there is no description";
    }
    if (failure.empty())
        return;
    PyErr_SetObject(PyExc_OSError, ::text(failure.c_str()).ptr());
    throw py::error_already_set();
}

// --------------------------------------------------------------------------- what a device asks

// The turn of a thread to ask the handle, whose functions go by one position in each list. The lock
// is waited for without the interpreter's, which the thread that has it may need.
class Reading::Turn
{
  public:
    explicit Turn(Reading &of) : reading(of)
    {
        {
            const py::gil_scoped_release released;
            reading.turn.lock();
        }
        if (reading.is_closed()) {
            reading.turn.unlock();
            throw py::value_error("the device is closed");
        }
    }
    ~Turn() { reading.turn.unlock(); }
    Turn(const Turn &) = delete;
    Turn &operator=(const Turn &) = delete;

  private:
    Reading &reading;
};

namespace
{

// While records are made no garbage is collected: what that runs could come back to the handle.
class NoCollection
{
  public:
    NoCollection() : was_enabled(PyGC_Disable() != 0) {}
    ~NoCollection()
    {
        if (was_enabled)
            PyGC_Enable();
    }
    NoCollection(const NoCollection &) = delete;
    NoCollection &operator=(const NoCollection &) = delete;

  private:
    const bool was_enabled;
};

} // namespace

Reading::Reading(const py::bytes &text, std::string file_name, ReadOptions given)
    : name(std::move(file_name)), options(std::move(given))
{
    {
        const std::string_view bytes = text;
        const py::gil_scoped_release released;
        const Folders folders(options.include);
        Interrupt interrupt;
        BsdlDiagnosisOptions how = {};
        how.size = sizeof how;
        how.package = package_of(options);
        how.package_dirs = folders.names.data();
        how.package_dir_count = folders.names.size();
        how.flags = flags_of(options);
        how.cancelled = Interrupt::asked;
        how.cancel_data = &interrupt;
        diagnosis.reset(bsdlDiagnose(bytes.data(), bytes.size(), name.c_str(), &how));
    }
    if (PyErr_Occurred())
        throw py::error_already_set();
    if (!diagnosis)
        throw std::bad_alloc();
}

Reading::~Reading()
{
    const py::gil_scoped_release released;
    diagnosis.reset();
}

void Reading::close()
{
    const py::gil_scoped_release released;
    const std::lock_guard<std::mutex> lock(turn);
    diagnosis.reset();
}

py::object Reading::part(std::string_view part_name)
{
    Json part;
    {
        const Turn mine(*this);
        const py::gil_scoped_release released;
        part = part_of(bsdlDiagnosisBsdl(diagnosis.get()), part_name);
    }
    return tree_of(part);
}

py::object Reading::rows_of(py::object (*rows)(Bsdl *bsdl))
{
    const Turn mine(*this);
    const NoCollection quiet;
    return rows(bsdlDiagnosisBsdl(diagnosis.get()));
}

py::object Reading::pin_rows() { return rows_of(::pin_rows); }

py::object Reading::cell_rows() { return rows_of(::cell_rows); }

py::object Reading::findings()
{
    const Turn mine(*this);
    const NoCollection quiet;
    return findings_of(diagnosis.get());
}

py::object Reading::unchecked()
{
    const Turn mine(*this);
    return text(bsdlDiagnosisUnchecked(diagnosis.get()));
}

py::object Reading::corvane_class(const std::string &key)
{
    const Turn mine(*this);
    return text(bsdlGetCorvaneClass(bsdlDiagnosisBsdl(diagnosis.get()), key.c_str()));
}

py::bytes Reading::fixed_text()
{
    const Turn mine(*this);
    size_t length = 0;
    const char *text = bsdlDiagnosisText(diagnosis.get(), &length);
    return {text, length};
}
