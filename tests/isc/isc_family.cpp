#include "isc_family.h"

#include <set>
#include <sstream>

using namespace support;

namespace isc_family
{

static const char *const OPCODES =
    "BYPASS (11111), EXTEST (00000), SAMPLE (00001), PRELOAD (00010), IDCODE (00011), "
    "USERCODE (00100), ISC_ENABLE (10000), ISC_DISABLE (10001), ISC_PROGRAM (10010), "
    "ISC_NOOP (10011), ISC_READ (10100), ISC_PROGRAM_SECURITY (10101), MINE (10110)";
static const char *const REGISTERS =
    "ISC_DEFAULT[1] (ISC_ENABLE, ISC_DISABLE, ISC_NOOP), "
    "ISC_PDATA[16] (ISC_PROGRAM, ISC_READ, ISC_PROGRAM_SECURITY), MINE[8] (MINE)";

const char *const NAMES[PART_COUNT] = {
    "ISC_Conformance",  "ISC_Pin_Behavior",   "ISC_Fixed_System_Pins",
    "ISC_Status",       "ISC_Blank_Usercode", "ISC_Security",
    "ISC_Flow",         "ISC_Procedure",      "ISC_Action",
    "ISC_Illegal_Exit", "ISC_Design_Warning"};

Family::Family() : opcodes_(OPCODES), registers_(REGISTERS)
{
    for (int part = 0; part < PART_COUNT; part++)
        order_.push_back(static_cast<Part>(part));
    with(ISC_CONFORMANCE, "STD_1532_2002");
    with(PIN_BEHAVIOR, "HIGHZ");
    with(STATUS, "IMPLEMENTED");
    with(BLANK_USERCODE, "11110000111100001111000011110000");
    with(FLOW, "EN INITIALIZE (ISC_ENABLE WAIT TCK 1), OFF TERMINATE (ISC_DISABLE WAIT TCK 2)");
    with(PROCEDURE, "PROC_ENABLE = (EN), PROC_ERROR_EXIT = (OFF), PROC_PROGRAM_DONE = (OFF)");
    with(ACTION, "PROGRAM = (PROC_ENABLE, PROC_PROGRAM_DONE)");
}

Family &Family::with(Part part, const std::string &value)
{
    return with_text(part, attribute(NAMES[part], value));
}

Family &Family::with_text(Part part, const std::string &text)
{
    texts_[part] = text;
    return *this;
}

Family &Family::in_order(const std::vector<Part> &order)
{
    order_ = order;
    return *this;
}

Family &Family::with_flow(const std::string &flow)
{
    std::string name = flow.substr(0, flow.find_first_of(", "));
    with(FLOW, flow);
    with(PROCEDURE, "PROC_ERROR_EXIT = (" + name + "), PROC_PROGRAM_DONE = (" + name + ")");
    return with(ACTION, "PROGRAM = (PROC_ERROR_EXIT)");
}

Family &Family::renamed(const std::string &from, const std::string &to)
{
    bool found = false;
    for (std::string *text : {&opcodes_, &registers_})
        if (size_t at = text->find(from); at != std::string::npos) {
            text->replace(at, from.size(), to);
            found = true;
        }
    EXPECT_TRUE(found) << from;
    return *this;
}

std::string Family::text() const
{
    std::string text;
    for (Part part : order_)
        if (!texts_[part].empty())
            text += (text.empty() ? "" : "\n") + texts_[part];
    return text;
}

Description Family::description() const
{
    return Description()
        .with(USES, "use STD_1532_2002.all;")
        .with(INSTRUCTION_LENGTH, "attribute INSTRUCTION_LENGTH of DEV : entity is 5;")
        .with(INSTRUCTION_OPCODE, attribute("INSTRUCTION_OPCODE", opcodes_))
        .with(INSTRUCTION_CAPTURE, attribute("INSTRUCTION_CAPTURE", "XXX01"))
        .with(USERCODE_REGISTER, attribute("USERCODE_REGISTER", "00001111000011110000111100001111"))
        .with(REGISTER_ACCESS, attribute("REGISTER_ACCESS", registers_))
        .with(EXTENSIONS, text());
}

int Family::line(Part part) const
{
    int line = description().line(EXTENSIONS);
    for (Part before : order_) {
        if (before == part)
            break;
        if (!texts_[before].empty())
            line += 1 + static_cast<int>(
                            std::count(texts_[before].begin(), texts_[before].end(), '\n'));
    }
    return line;
}

void expect_rows(int32_t (*check)(Bsdl *), const std::vector<CheckRow> &rows)
{
    for (const CheckRow &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(row.family.description());
        EXPECT_EQ(bsdl_check(reading), 0);
        EXPECT_EQ(reading.check(check), row.errors.empty() ? 0 : 100);
        ExpectedMessages expected;
        std::istringstream lines(row.errors);
        for (std::string error; std::getline(lines, error);)
            expected.push_back({ERROR, error, 2});
        expect_messages(reading.messages(), expected);
    }
}

void expect_passed(Reading &reading)
{
    expect_clean(reading);
    EXPECT_EQ(reading.check(bsdl_check_isc), 0);
    expect_messages(errors_and_warnings(reading.messages()), {});
}

void open_flow(Bsdl *handle, const char *procedure, const char *data_name)
{
    IscFlowInfo *info = bsdlIscGetProc(handle, procedure, data_name);
    EXPECT_NE(info, nullptr) << procedure;
    bsdlIscFreeFlow(info);
    bsdlIscFreeFlow(bsdlIscFirstFlow(handle));
}

static std::string named(const char *name, const char *data_name)
{
    return std::string(name ? name : "-") + (data_name ? "(" + std::string(data_name) + ")" : "");
}

static std::string expression_text(const IscExpression *expression)
{
    if (!expression)
        return "-";
    std::ostringstream out;
    out << expression->operation << "/" << expression->variable_index << "/" << expression->operand
        << "/" << named(expression->hex_string, nullptr) << "/" << expression->is_definition;
    return out.str();
}

std::string update_text(const IscUpdateField *field)
{
    return std::to_string(field->field_width) + ":" + expression_text(field->expression);
}

std::string capture_text(const IscCaptureField *field)
{
    std::ostringstream out;
    out << field->field_width << ":" << field->expected_output << expression_text(field->expected)
        << "*" << field->mask_output << expression_text(field->mask) << ":" << field->tag;
    return out.str();
}

static void print_activities(std::ostream &out, Bsdl *handle)
{
    for (IscActivityInfo *info = bsdlIscFirstActivity(handle); info;
         info = bsdlIscNextActivity(handle)) {
        out << "        " << named(info->instruction_name, nullptr);
        for (int32_t value : info->v)
            out << " " << value;
        out << " |" << bsdlIscNbrOfUpdateStreams(handle);
        for (const IscUpdateField *field :
             all_of(handle, bsdlIscFirstUpdateStream, bsdlIscNextUpdateStream))
            out << " " << update_text(field);
        out << " |" << bsdlIscNbrOfCaptureStreams(handle);
        for (const IscCaptureField *field :
             all_of(handle, bsdlIscFirstCaptureStream, bsdlIscNextCaptureStream))
            out << " " << capture_text(field);
        out << "\n";
        bsdlIscFreeActivity(info);
    }
}

static void print_flows(std::ostream &out, Bsdl *handle, std::set<std::string> *shown)
{
    for (IscFlowInfo *info = bsdlIscFirstFlow(handle); info; info = bsdlIscNextFlow(handle)) {
        std::string name = named(info->flow_name, info->data_name);
        out << "    " << name << " flags " << info->flags << " variables " << info->variable_count
            << " blocks " << bsdlIscNbrOfFlowBlocks(handle) << "\n";
        bsdlIscFreeFlow(info);
        if (!shown->insert(name).second)
            continue;
        for (int32_t code = bsdlIscFirstFlowBlock(handle); code;
             code = bsdlIscNextFlowBlock(handle)) {
            out << "      " << code << " activities " << bsdlIscNbrOfActivities(handle) << "\n";
            print_activities(out, handle);
        }
    }
}

static void print_scalars(std::ostream &out, Bsdl *handle)
{
    out << "conformance " << bsdlIscConformance(handle) << "\npin behavior "
        << bsdlIscPinBehavior(handle) << "\nstatus " << bsdlIscStatus(handle) << "\nblank usercode "
        << named(bsdlIscBlankUserStream(handle), nullptr) << "\n";
    if (const IscSecurity *security = bsdlIscSecurity(handle))
        out << "security " << security->disable_read << " " << security->disable_program << " "
            << security->disable_erase << " " << security->disable_key_msb << "-"
            << security->disable_key_lsb << "\n";
    for (const PortId *pin : all_of(handle, bsdlIscFirstFixedPin, bsdlIscNextFixedPin)) {
        out << "fixed pin " << pin->name << "/" << pin->subscripted << "/" << pin->subscript
            << "\n";
    }
    for (const char *name : all_of(handle, bsdlIscFirstIllegalExit, bsdlIscNextIllegalExit))
        out << "illegal exit " << name << "\n";
    out << "design warning " << named(bsdlIscDesignWarning(handle), nullptr) << "\n";
}

std::string tree_text(Bsdl *handle)
{
    std::ostringstream out;
    print_scalars(out, handle);
    out << "actions " << bsdlIscNbrOfActions(handle) << "\n";
    std::set<std::string> shown;
    for (const IscAction *action = bsdlIscFirstAction(handle); action;
         action = bsdlIscNextAction(handle)) {
        out << named(action->action_name, action->data_name) << " exclusivity "
            << action->exclusivity << " procedures " << bsdlIscNbrOfProcedures(handle) << "\n";
        for (const IscActionSpec *spec = bsdlIscFirstProc(handle); spec;
             spec = bsdlIscNextProc(handle)) {
            out << "  " << named(spec->procedure_name, spec->data_name) << " attributes "
                << spec->attributes << " flows " << bsdlIscNbrOfFlows(handle) << "\n";
            print_flows(out, handle, &shown);
        }
    }
    return out.str();
}

} // namespace isc_family
