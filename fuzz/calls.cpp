#include "ask.h"
#include "targets.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>
#include <vector>

// A sequence of calls. Each byte pair of the input picks an export and its arguments: handles that
// are open, given back with freeBsdl() or NULL; records and texts that earlier calls returned and
// that are still owned by an open handle, or NULL. A message sink may read another file.

namespace
{

constexpr const char *FILES[] = {
    TARNLET_EXAMPLES "demo.bsd",
    TARNLET_EXAMPLES "demo_1990.bsd",
    TARNLET_EXAMPLES "demo_1994.bsd",
    TARNLET_EXAMPLES "demo_mistakes.bsd",
    TARNLET_EXAMPLES "isc_2001.bsd",
    TARNLET_EXAMPLES "isc_2002.bsd",
    TARNLET_EXAMPLES "aio_2003.bsd",
    TARNLET_EXAMPLES "two_taps.prg",
    TARNLET_EXAMPLES "absent.bsd",
    "",
    "/dev/null",
    "/proc/self/exe",
};

constexpr const char *TEXTS[] = {
    nullptr,
    "",
    "TQFP48",
    "PROGRAM",
    "ARRAY",
    "proc_enable",
    "U1",
    "u7/a",
    "U8",
    "CLASS",
    "PKG",
    "ADDR",
    "a name that no description has",
};

constexpr int32_t NUMBERS[] = {0, 1, -1, 2, 7, INT32_MAX, INT32_MIN};

// What calls have returned and may be handed in again, per handle.
struct Slot {
    Bsdl *handle = nullptr;
    bool given_back = false; // by freeBsdl()
    std::vector<PinEntry *> pins;
    std::vector<InstructionEntry *> instructions;
    std::vector<CellEntry *> cells;
    std::vector<EbstPin *> ebst_pins;
    std::vector<const PortId *> ports;
    std::vector<GSList *> cell_links;
    std::vector<GSList *> capture_links;
    std::vector<const char *> texts;

    void forget_records()
    {
        pins.clear();
        instructions.clear();
        cells.clear();
        ebst_pins.clear();
        ports.clear();
        cell_links.clear();
        capture_links.clear();
        texts.clear();
    }
};

class Session
{
  public:
    Session(const uint8_t *data, size_t size) : at_(data), end_(data + size) {}
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;
    void run();

    uint32_t draw() { return at_ < end_ ? *at_++ : 0; }

    template <class R, class... Arguments> void call(R (*function)(Arguments...));
    void call_links(GSList *(*function)(Bsdl *));
    void call_captures(GSList *(*function)(GSList *));
    void call_capture(int32_t (*function)(GSList *));
    void call_cell(const char *(*function)(GSList *));

    void read();
    void free_one();
    void release_one();
    void read_in_sink();
    void component_list();
    void package_dirs();
    void call_from_sink();

  private:
    Slot &slot() { return slots_[current_]; }
    template <class T> T *record_of(const std::vector<T *> &records)
    {
        const uint32_t choice = draw();
        return choice % 5 == 0 || records.empty() ? nullptr : records[choice % records.size()];
    }
    template <class T> static void keep(std::vector<T *> *records, T *record)
    {
        if (!record)
            return;
        if (records->size() >= 16)
            records->erase(records->begin());
        records->push_back(record);
    }

    template <class T> T argument();
    void kept(PinEntry *pin) { keep(&slot().pins, pin); }
    void kept(InstructionEntry *e) { keep(&slot().instructions, e); }
    void kept(CellEntry *e) { keep(&slot().cells, e); }
    void kept(EbstPin *pin) { keep(&slot().ebst_pins, pin); }
    void kept(const PortId *port)
    {
        if (port && port->name)
            seen_ = std::strlen(port->name);
        keep(&slot().ports, port);
    }
    void kept(const char *text)
    {
        if (text)
            seen_ = std::strlen(text);
        keep(&slot().texts, text);
    }
    void kept(const PortGroup *group)
    {
        if (group) {
            kept(group->representative);
            kept(group->associated);
        }
    }
    void kept(const AioPinResult *pin)
    {
        if (pin)
            kept(pin->port);
    }
    void kept(const IscActionSpec *spec)
    {
        if (spec) {
            kept(spec->procedure_name);
            kept(spec->data_name);
        }
    }
    void kept(const IscAction *action)
    {
        if (action) {
            kept(action->action_name);
            kept(action->data_name);
        }
    }
    void kept(IscFlowInfo *info)
    {
        if (info) {
            kept(info->flow_name);
            kept(info->data_name);
            bsdlIscFreeFlow(info);
        }
    }
    void kept(IscActivityInfo *info)
    {
        if (info) {
            kept(info->instruction_name);
            bsdlIscFreeActivity(info);
        }
    }
    void kept(const PrgComponentSetting *setting)
    {
        if (setting) {
            kept(setting->part_name);
            kept(setting->register_values);
        }
    }
    void kept(const PrgProgramSpec *program)
    {
        if (program) {
            kept(program->part_name);
            kept(program->in_file);
        }
    }
    void kept(const void *) {}
    void kept(double number) { seen_ = number > 0; }
    void kept(int32_t number) { seen_ = static_cast<size_t>(number); }
    void kept(uint32_t number) { seen_ = number; }

    const uint8_t *at_;
    const uint8_t *end_;
    Slot slots_[3];
    uint32_t current_ = 0;
    uint32_t messages_ = 0;
    volatile size_t seen_ = 0;
};

} // namespace

// ------------------------------------------------------------------------------------- arguments

// The slot that a drawn handle belongs to is that whose records a call may get.
template <> Bsdl *Session::argument<Bsdl *>()
{
    const uint32_t choice = draw();
    current_ = choice % 3;
    return choice % 8 == 7 ? nullptr : slot().handle;
}

template <> const char *Session::argument<const char *>()
{
    const uint32_t choice = draw();
    if (choice & 1)
        return TEXTS[(choice >> 1) % std::size(TEXTS)];
    return record_of(slots_[choice >> 1 & 1].texts);
}

template <> int32_t Session::argument<int32_t>() { return NUMBERS[draw() % std::size(NUMBERS)]; }

template <> const PortId *Session::argument<const PortId *>() { return record_of(slot().ports); }

template <> PinEntry *Session::argument<PinEntry *>() { return record_of(slot().pins); }

template <> InstructionEntry *Session::argument<InstructionEntry *>()
{
    return record_of(slot().instructions);
}

template <> CellEntry *Session::argument<CellEntry *>() { return record_of(slot().cells); }

template <> EbstPin *Session::argument<EbstPin *>() { return record_of(slot().ebst_pins); }

template <class R, class... Arguments> void Session::call(R (*function)(Arguments...))
{
    kept(function(argument<Arguments>()...));
}

void Session::call_links(GSList *(*function)(Bsdl *))
{
    GSList *link = function(argument<Bsdl *>());
    keep(&slot().cell_links, link);
}

void Session::call_captures(GSList *(*function)(GSList *))
{
    keep(&slot().capture_links, function(record_of(slot().cell_links)));
}

void Session::call_capture(int32_t (*function)(GSList *))
{
    kept(function(record_of(slot().capture_links)));
}

void Session::call_cell(const char *(*function)(GSList *))
{
    kept(function(record_of(slot().cell_links)));
}

// ------------------------------------------------------------------------- calls of another form

static const char *nested_file;
static int nested_countdown;

static Session *running;

static void nesting_sink(void *, BsdlMessage *message)
{
    volatile size_t length = std::strlen(message->text);
    (void)length;
    if (running)
        running->call_from_sink();
    if (!nested_file || nested_countdown-- > 0)
        return;
    const char *file = nested_file;
    nested_file = nullptr;
    BsdlContext *context = fuzz_context();
    if (Bsdl *h = readBsdl(file, nullptr, nullptr, 0, context)) {
        bsdl_check(h);
        ask_everything(h);
        bsdlRelease(h);
    }
}

// The handle whose check runs among them: it takes no notice.
void Session::call_from_sink()
{
    if (messages_++ % 64 != 20)
        return;
    Session *const outer = std::exchange(running, nullptr);
    for (const Slot &each : slots_) {
        if (!each.handle || each.given_back)
            continue;
        bsdl_check(each.handle);
        bsdlGenEbst(each.handle);
        ask_everything(each.handle);
    }
    running = outer;
}

void Session::read()
{
    static BsdlContext context = {nesting_sink, nullptr, 4};
    Slot &into = slots_[current_ = draw() % 3];
    if (into.handle)
        bsdlRelease(into.handle);
    into = Slot{};
    const uint32_t flags = draw();
    const char *file = FILES[draw() % std::size(FILES)];
    const char *package = argument<const char *>();
    uint32_t bits = flags << 3; // strict, and those without effect
    if (flags & 2)
        bits |= BSDL_FLAG_FAST_READ;
    into.handle = readBsdl(flags & 64 ? nullptr : file, package, nullptr, bits,
                           flags & 128 ? nullptr : &context);
}

void Session::free_one()
{
    Slot &which = slots_[current_ = draw() % 3];
    if (which.handle && !which.given_back)
        freeBsdl(which.handle);
    which.given_back = true;
    which.forget_records();
}

void Session::release_one()
{
    Slot &which = slots_[current_ = draw() % 3];
    bsdlRelease(which.handle);
    which = Slot{};
}

void Session::read_in_sink()
{
    nested_file = FILES[draw() % std::size(FILES)];
    nested_countdown = static_cast<int>(draw());
}

void Session::component_list()
{
    GList *list = nullptr;
    bsdlInitComponentList();
    for (uint32_t count = draw() % 4; count; count--)
        list = bsdlAddComponent(list, &slots_[count - 1]);
    kept(bsdlGetNbrOfComponents(list));
    kept(bsdlGetFirstComponent(list));
    kept(bsdlGetNextComponent(list));
    GList *found = bsdlFindComponent(list, &slots_[draw() % 3]);
    kept(bsdlGetNextComponent(found));
    bsdlFreeComponentList(list);
    g_list_free(list);
}

void Session::package_dirs()
{
    GSList *dirs = draw() & 1 ? bsdlUsrPackDirs(g_strdup("/tmp"), g_strdup(""), nullptr)
                              : bsdlUsrPackDirs(nullptr, nullptr);
    bsdlFreeUsrPackDirs(dirs);
    const char *name = nullptr;
    bsdlLibVersion(draw() & 1 ? &name : nullptr, nullptr);
    bsdlLibVersion(nullptr, nullptr);
    bsdl_msg(static_cast<int32_t>(draw() % 5), draw() % 6, draw() & 1 ? nullptr : "%s", "text");
    kept(bsdlMessageLine());
    kept(bsdlMessageColumn());
    kept(bsdlMessageEndLine());
    kept(bsdlMessageEndColumn());
    kept(static_cast<const void *>(bsdlMessageExpected(nullptr)));
    kept(static_cast<const void *>(bsdlMessageFile()));
    kept(static_cast<const void *>(bsdlMessageRule()));
    bsdlIscFreeActivity(nullptr);
    bsdlIscFreeFlow(nullptr);
}

namespace
{

using Call = void (*)(Session *);

template <auto function> void plain(Session *session) { session->call(function); }
template <void (Session::*member)()> void own(Session *session) { (session->*member)(); }

void set_ebst_file(Session *session)
{
    static const MemoryFile file("ebst");
    session->call(+[](Bsdl *h) { return bsdlSetEbstFile(h, file.path().c_str()); });
}

// Never to a file in the current folder.
void create_ebst(Session *session)
{
    set_ebst_file(session);
    session->call(bsdlCreateEbst);
}

void no_ebst_name(Session *session)
{
    session->call(+[](Bsdl *h) { return bsdlSetEbstFile(h, nullptr); });
}

// clang-format off
constexpr Call CALLS[] = {
    own<&Session::read>, own<&Session::read>, own<&Session::read>, own<&Session::free_one>,
    own<&Session::release_one>, own<&Session::read_in_sink>, own<&Session::component_list>,
    own<&Session::package_dirs>, set_ebst_file, create_ebst, no_ebst_name, plain<bsdlGenEbst>,
    [](Session *s) { s->call_links(bsdlGetFirstCellDesc); },
    [](Session *s) { s->call_links(bsdlGetNextCellDesc); },
    [](Session *s) { s->call_captures(bsdlGetCellFirstCaptDesc); },
    [](Session *s) { s->call_captures(bsdlGetCellNextCaptDesc); },
    [](Session *s) { s->call_capture(bsdlGetCellCaptContext); },
    [](Session *s) { s->call_capture(bsdlGetCellCaptInstr); },
    [](Session *s) { s->call_capture(bsdlGetCellCaptSource); },
    [](Session *s) { s->call_cell(bsdlGetCellDescName); },
    [](Session *s) { s->call_cell(bsdlGetCellDescPackage); },
    plain<bsdlAioConformance>, plain<bsdlAioExtestPulse>, plain<bsdlAioExtestTrain>,
    plain<bsdlAioFirstPinBehavior>, plain<bsdlAioNbrOfPinBehaviorDescriptions>,
    plain<bsdlAioNextACPort>, plain<bsdlAioNextInputCell>, plain<bsdlAioNextPinBehavior>,
    plain<bsdlAioThisPinBehavior>, plain<bsdlComponentName>, plain<bsdlConformance>,
    plain<bsdlDesignWarning>, plain<bsdlDot4>, plain<bsdlFileName>, plain<bsdlGetBSRLength>,
    plain<bsdlGetCellControlCell>, plain<bsdlGetCellDisableResult>, plain<bsdlGetCellDisableValue>,
    plain<bsdlGetCellEbstName>, plain<bsdlGetCellFunction>, plain<bsdlGetCellName>,
    plain<bsdlGetCellNumber>, plain<bsdlGetCellPort>, plain<bsdlGetCellSafeBit>,
    plain<bsdlGetCorvaneClass>, plain<bsdlGetDefaultDevicePackage>, plain<bsdlGetEbstPinName>,
    plain<bsdlGetEbstPinNumber>, plain<bsdlGetEbstPinType>, plain<bsdlGetFirstCellEntry>,
    plain<bsdlGetFirstComplPattern>, plain<bsdlGetFirstComplPort>,
    plain<bsdlGetFirstDotALLFileSpec>, plain<bsdlGetFirstDotALLSpec>, plain<bsdlGetFirstEbstPin>,
    plain<bsdlGetFirstIdcodePattern>, plain<bsdlGetFirstInstrPattern>,
    plain<bsdlGetFirstInstruction>, plain<bsdlGetFirstInstructionCapture>, plain<bsdlGetFirstPin>,
    plain<bsdlGetFirstPinMap>, plain<bsdlGetFirstPortGroup>, plain<bsdlGetFirstUsercodePattern>,
    plain<bsdlGetInstrCaptureValue>, plain<bsdlGetInstrRegisterLength>,
    plain<bsdlGetInstrRegisterName>, plain<bsdlGetInstructionLength>, plain<bsdlGetInstructionName>,
    plain<bsdlGetInstructionType>, plain<bsdlGetNbrOfComplPatterns>, plain<bsdlGetNbrOfComplPorts>,
    plain<bsdlGetNbrOfIdcodePatterns>, plain<bsdlGetNbrOfInstrPatterns>,
    plain<bsdlGetNbrOfInstructionCaptures>, plain<bsdlGetNbrOfInstructions>,
    plain<bsdlGetNbrOfPinMaps>, plain<bsdlGetNbrOfPins>, plain<bsdlGetNbrOfPortGroups>,
    plain<bsdlGetNbrOfUsercodePatterns>, plain<bsdlGetNextCellEntry>,
    plain<bsdlGetNextComplPattern>, plain<bsdlGetNextComplPort>, plain<bsdlGetNextDotALLFileSpec>,
    plain<bsdlGetNextDotALLSpec>, plain<bsdlGetNextEbstPin>, plain<bsdlGetNextIdcodePattern>,
    plain<bsdlGetNextInstrPattern>, plain<bsdlGetNextInstruction>,
    plain<bsdlGetNextInstructionCapture>, plain<bsdlGetNextPin>, plain<bsdlGetNextPinMap>,
    plain<bsdlGetNextPortGroup>, plain<bsdlGetNextUsercodePattern>, plain<bsdlGetNrOfEbstPins>,
    plain<bsdlGetNumErrors>, plain<bsdlGetPinFunction>, plain<bsdlGetPinPhysicalName>,
    plain<bsdlGetPinPortID>, plain<bsdlGetPinType>, plain<bsdlGetTckFrequency>,
    plain<bsdlGetTckHaltState>, plain<bsdlGetTckPortId>, plain<bsdlGetTdiPortId>,
    plain<bsdlGetTdoPortId>, plain<bsdlGetTmsPortId>, plain<bsdlGetTrstPortId>, plain<bsdlIs1532>,
    plain<bsdlIs1990>, plain<bsdlIs1994>, plain<bsdlIs2001>, plain<bsdlIsAio>,
    plain<bsdlIsInstrPreload>, plain<bsdlIsPrg>, plain<bsdlIscBlankUserStream>,
    plain<bsdlIscConformance>, plain<bsdlIscDesignWarning>, plain<bsdlIscFirstAction>,
    plain<bsdlIscFirstActivity>, plain<bsdlIscFirstCaptureStream>, plain<bsdlIscFirstFixedPin>,
    plain<bsdlIscFirstFlow>, plain<bsdlIscFirstFlowBlock>, plain<bsdlIscFirstIllegalExit>,
    plain<bsdlIscFirstProc>, plain<bsdlIscFirstUpdateStream>, plain<bsdlIscGetProc>,
    plain<bsdlIscNbrOfActions>, plain<bsdlIscNbrOfActivities>, plain<bsdlIscNbrOfCaptureStreams>,
    plain<bsdlIscNbrOfFlowBlocks>, plain<bsdlIscNbrOfFlows>, plain<bsdlIscNbrOfProcedures>,
    plain<bsdlIscNbrOfUpdateStreams>, plain<bsdlIscNextAction>, plain<bsdlIscNextActivity>,
    plain<bsdlIscNextCaptureStream>, plain<bsdlIscNextFixedPin>, plain<bsdlIscNextFlow>,
    plain<bsdlIscNextFlowBlock>, plain<bsdlIscNextIllegalExit>, plain<bsdlIscNextProc>,
    plain<bsdlIscNextUpdateStream>, plain<bsdlIscPinBehavior>, plain<bsdlIscSecurity>,
    plain<bsdlIscSelectAction>, plain<bsdlIscSelectProc>, plain<bsdlIscStatus>,
    plain<bsdlPrgComponentInstr>, plain<bsdlPrgComponentName>, plain<bsdlPrgCurrProgPart>,
    plain<bsdlPrgCurrTap>, plain<bsdlPrgDesignName>, plain<bsdlPrgFirstComponent>,
    plain<bsdlPrgFirstProgPart>, plain<bsdlPrgFirstTap>, plain<bsdlPrgFrequency>,
    plain<bsdlPrgNbrOfComponents>, plain<bsdlPrgNbrOfProgParts>, plain<bsdlPrgNbrOfTaps>,
    plain<bsdlPrgNextComponent>, plain<bsdlPrgNextProgPart>, plain<bsdlPrgNextTap>,
    plain<bsdlPrgProgInFile>, plain<bsdlPrgProgOutFile>, plain<bsdlPrgProgPartName>,
    plain<bsdlPrgProgPartType>, plain<bsdlPrgProgProgType>, plain<bsdlPrgRevision>,
    plain<bsdlPrgSelectComponent>, plain<bsdlPrgSelectProgPart>, plain<bsdlPrgSelectTap>,
    plain<bsdlStandard>, plain<bsdlStandard1149_1>, plain<bsdlStandard1149_4>,
    plain<bsdlStandard1149_6>, plain<bsdlStandard1532>, plain<bsdlStandardPrg>, plain<bsdl_check>,
    plain<bsdl_check_aio>, plain<bsdl_check_aio_conformance>, plain<bsdl_check_aio_extest_pulse>,
    plain<bsdl_check_aio_extest_train>, plain<bsdl_check_aio_pin_behavior>,
    plain<bsdl_check_all_pin_maps>, plain<bsdl_check_bsr>, plain<bsdl_check_compliance>,
    plain<bsdl_check_extensions>, plain<bsdl_check_generic>, plain<bsdl_check_grouped_port>,
    plain<bsdl_check_instr_reg>, plain<bsdl_check_intest>, plain<bsdl_check_isc>,
    plain<bsdl_check_isc_actions>, plain<bsdl_check_isc_blank_usercode>,
    plain<bsdl_check_isc_design_warning>, plain<bsdl_check_isc_fixed_system_pins>,
    plain<bsdl_check_isc_flow>, plain<bsdl_check_isc_illegal_exit>, plain<bsdl_check_isc_instr_reg>,
    plain<bsdl_check_isc_pin_behaviour>, plain<bsdl_check_isc_procedures>,
    plain<bsdl_check_isc_security>, plain<bsdl_check_isc_status>, plain<bsdl_check_logical_port>,
    plain<bsdl_check_optional_reg>, plain<bsdl_check_packages>, plain<bsdl_check_pin_map>,
    plain<bsdl_check_prg>, plain<bsdl_check_prg_prog_ref>, plain<bsdl_check_reg_access>,
    plain<bsdl_check_runbist>, plain<bsdl_check_scan_port>, plain<btslD4AtBus>,
    plain<btslD4FirstABM>, plain<btslD4NbrABMs>, plain<btslD4NextABM>,
    plain<btslD4TbicFirstPartitions>, plain<btslD4TbicNbrPartitions>,
    plain<btslD4TbicNextPartitions>,
};
// clang-format on

} // namespace

void Session::run()
{
    while (at_ < end_)
        CALLS[draw() % std::size(CALLS)](this);
}

Session::~Session()
{
    nested_file = nullptr;
    for (Slot &slot : slots_)
        bsdlRelease(slot.handle);
}

void fuzz_calls(const uint8_t *data, size_t size)
{
    // A reading of an example costs as much as thousands of queries.
    Session session(data, std::min<size_t>(size, 2000));
    running = &session;
    session.run();
    running = nullptr;
}
