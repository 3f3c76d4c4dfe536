#include "boundary/boundary.h"

#include "frame/check.h"
#include "frame/messages.h"
#include "frame/texts.h"
#include "header/header.h"
#include "registers/registers.h"

#include <algorithm>

namespace
{

// A wrong length may leave two billion numbers without a cell.
constexpr uint32_t MOST_MISSING_LINES = 65536;

// The entries that name one control cell, in table order, apart by their disable value.
struct ControlGroup {
    static constexpr int VALUES = 3; // DisableValue
    uint32_t first[VALUES];
    uint32_t last[VALUES];
    bool seen; // all entries are marked as controlled
};

struct CellCheck {
    Bsdl *bsdl;
    Scratch scratch;
    uint32_t length;
    CellEntry *const *cells;
    uint32_t count;
    Index groups; // ccell -> place in `group`
    ControlGroup *group;
    uint32_t *next_in_group; // position -> next position of the same group and disable value
    bool opcode_has_intest;
};

} // namespace

static const char *function_name(const CellEntry *cell)
{
    return cell_function_name(cell->cell_spec->function);
}

// ------------------------------------------------------------------------------ length and numbers

// The number in the statement of the length, which demands the cells.
static Place length_place(const CellCheck *check)
{
    return token_place(check->bsdl->data->boundary_register->length_place.begin, VALUE_TOKEN);
}

struct MissingNumbers {
    Place place;
    uint32_t lines;
    bool found;
};

static void report_missing(MissingNumbers *missing, uint64_t from, uint64_t to)
{
    missing->found |= from < to;
    if (!message_wanted(2))
        return;
    for (; from < to && missing->lines < MOST_MISSING_LINES; from++, missing->lines++)
        rule_error({"cell-number-missing", missing->place}, "cell_number (%i) does not exist",
                   static_cast<int32_t>(from));
}

static int32_t check_missing_numbers(CellCheck *check)
{
    auto *numbers = arena_array<uint32_t>(&check->scratch, check->count);
    if (!numbers)
        return BSDL_RESULT_FAILED;
    for (uint32_t i = 0; i < check->count; i++)
        numbers[i] = check->cells[i]->cell_number;
    uint32_t *end = numbers + check->count;
    if (numbers[0] > end[-1]) // the falling order that most tables have
        std::reverse(numbers, end);
    if (!std::is_sorted(numbers, end))
        std::sort(numbers, end);

    MissingNumbers missing = {.place = length_place(check), .lines = 0, .found = false};
    uint64_t expected = 0;
    for (const uint32_t *number = numbers; number < end && *number < check->length; number++) {
        report_missing(&missing, expected, *number);
        expected = uint64_t{*number} + 1;
    }
    report_missing(&missing, expected, check->length);
    return missing.found ? BSDL_RESULT_FAILED : BSDL_RESULT_OK;
}

static int32_t check_numbers(CellCheck *check)
{
    int32_t result = BSDL_RESULT_OK;
    if (check->length == 0)
        result |= rule_error({"boundary-length-zero", length_place(check)},
                             "BOUNDARY_LENGTH must be greater than zero");
    result |= check_missing_numbers(check);
    return result;
}

static int32_t check_number(const CellCheck *check, const CellEntry *cell)
{
    if (cell->cell_number < check->length)
        return BSDL_RESULT_OK;
    return rule_error({"cell-number-range", cell_place(cell, CELL_NUMBER)},
                      "cell_number (%i) cannot be equal to or larger than %i", cell->cell_number,
                      check->length);
}

// ----------------------------------------------------------------------------------- merged cells

static bool is_input(const CellEntry *cell)
{
    return cell->cell_spec->function == CELL_FUNCTION_INPUT;
}

static bool merges_with_input(const CellEntry *cell)
{
    switch (cell->cell_spec->function) {
    case CELL_FUNCTION_OUTPUT2:
    case CELL_FUNCTION_OUTPUT3:
    case CELL_FUNCTION_CONTROL:
    case CELL_FUNCTION_CONTROLR:
        return true;
    default:
        return false;
    }
}

static int32_t check_merged_with_input(const CellEntry *cell)
{
    if (merges_with_input(cell))
        return BSDL_RESULT_OK;
    return rule_error({"merged-cell-function", cell_place(cell, CELL_FUNCTION)},
                      "Merged cell (cell_number %i) must have function OUTPUT2, OUTPUT3, CONTROL "
                      "or CONTROLR (now '%s')",
                      cell->cell_number, function_name(cell));
}

static int32_t check_merged_functions(const CellEntry *a, const CellEntry *b)
{
    if (is_input(a) && is_input(b))
        return rule_error({"merged-cell-two-inputs", cell_place(a, CELL_FUNCTION)},
                          "Only one of merged cells (cell_number %i) can have function '%s'",
                          a->cell_number, cell_function_name(CELL_FUNCTION_INPUT));
    if (is_input(a))
        return check_merged_with_input(b);
    if (is_input(b))
        return check_merged_with_input(a);
    return rule_error({"merged-cell-no-input", cell_place(a, CELL_FUNCTION)},
                      "One of merged cells (cell_number %i) must have function '%s'",
                      a->cell_number, cell_function_name(CELL_FUNCTION_INPUT));
}

static int32_t check_merged(CellEntry *a)
{
    CellEntry *b = a->merged_with;
    if (!b)
        return BSDL_RESULT_OK;
    rule_message(BSDL_LEVEL_INFO, 4, {nullptr, cell_place(a, CELL_NUMBER)},
                 "\t\tCell_number %i is a merged cell", a->cell_number);

    const CellSpec *spec = a->cell_spec;
    const CellSpec *other = b->cell_spec;
    int32_t result = BSDL_RESULT_OK;
    if (!same_name(spec->cell_name, other->cell_name))
        result |= rule_error({"merged-cell-name", cell_place(a, CELL_NAME)},
                             "Cell_names of merged cells must be equal (now '%s' and '%s')",
                             spec->cell_name, other->cell_name);
    result |= check_merged_functions(a, b);
    if (spec->safe_bit != SAFE_BIT_X && other->safe_bit != SAFE_BIT_X &&
        spec->safe_bit != other->safe_bit)
        result |= rule_error({"merged-cell-safe-bit", cell_place(a, CELL_SAFE_BIT)},
                             "Merged cells (cell_number %i) must have equal safe_bit values, "
                             "unless one value is 'X' (now '%s' and '%s')",
                             a->cell_number, safe_bit_name(spec->safe_bit),
                             safe_bit_name(other->safe_bit));
    // From here on the link is mutual. Of three entries with one number the first ends up with the
    // last, and the second keeps the first.
    b->merged_with = a;
    return result;
}

// ------------------------------------------------------------------------------- cell descriptions

static bool serves(const CellDesc *desc, int32_t function)
{
    if (function == CELL_FUNCTION_BIDIR &&
        (has_context(desc, CELL_FUNCTION_BIDIR_IN) || has_context(desc, CELL_FUNCTION_BIDIR_OUT)))
        return true;
    return has_context(desc, function);
}

static int32_t check_context(const CellEntry *cell)
{
    const CellDesc *desc = cell->cell_desc;
    if (serves(desc, cell->cell_spec->function))
        return BSDL_RESULT_OK;
    int32_t result = BSDL_RESULT_OK;
    // A description without capture descriptors is reported twice.
    for (int times = desc->capt_descs ? 1 : 2; times > 0; times--)
        result |=
            rule_error({"cell-context", cell_place(cell, CELL_FUNCTION)},
                       "Cell_type '%s' has no cell_context '%s' as required by cell_number %i",
                       desc->name, function_name(cell), cell->cell_number);
    return result;
}

static int32_t check_cell_desc(const CellCheck *check, CellEntry *cell)
{
    const char *name = cell->cell_spec->cell_name;
    cell->cell_desc = find_cell_desc(check->bsdl, name);
    if (!cell->cell_desc)
        return rule_error({"cell-name-unknown", cell_place(cell, CELL_NAME)},
                          "Cell_name '%s' is not a defined cell", name);
    int32_t result = check_context(cell);
    if (check->opcode_has_intest && !cell->cell_desc->has_intest)
        result |= rule_error({"cell-no-intest", cell_place(cell, CELL_NAME)},
                             "INTEST is specified in <opcode description> and <cell name> '%s' "
                             "does not possess INTEST support capability",
                             cell->cell_desc->name);
    return result;
}

// ---------------------------------------------------------------------------------- control cells

static void group_by_control_cell(CellCheck *check)
{
    uint32_t disabled = 0;
    for (uint32_t i = 0; i < check->count; i++)
        disabled += check->cells[i]->disable_spec != nullptr;
    index_start(&check->groups, &check->scratch, disabled);
    check->group = arena_array<ControlGroup>(&check->scratch, disabled);
    check->next_in_group = arena_array<uint32_t>(&check->scratch, check->count);
    if (check->scratch.failed)
        return;

    uint32_t groups = 0;
    for (uint32_t i = 0; i < check->count; i++) {
        const DisableSpec *spec = check->cells[i]->disable_spec;
        if (!spec)
            continue;
        uint32_t place = index_first(&check->groups, static_cast<uint32_t>(spec->ccell), groups);
        if (place == INDEX_NONE) {
            place = groups++;
            std::fill_n(check->group[place].first, ControlGroup::VALUES, INDEX_NONE);
            std::fill_n(check->group[place].last, ControlGroup::VALUES, INDEX_NONE);
        }
        ControlGroup *group = &check->group[place];
        uint32_t *last = &group->last[spec->disable_value];
        *(*last == INDEX_NONE ? &group->first[spec->disable_value] : &check->next_in_group[*last]) =
            i;
        *last = i;
        check->next_in_group[i] = INDEX_NONE;
    }
}

static void mark_controlled(const CellCheck *check, ControlGroup *group)
{
    if (group->seen)
        return;
    group->seen = true;
    for (uint32_t first : group->first)
        for (uint32_t i = first; i != INDEX_NONE; i = check->next_in_group[i])
            check->cells[i]->disable_spec->control_seen = 1;
}

static int32_t report_disable_value(const CellEntry *cell, const CellEntry *control)
{
    return rule_error({"control-cell-safe-bit", cell_place(cell, CELL_DISABLE_VALUE)},
                      "The <disable value> (%s) of <cell number> %i with <function> '%s' must be "
                      "equal to the <safe bit> (%s) of <cell number> %i with <function> '%s'",
                      disable_value_name(cell->disable_spec->disable_value), cell->cell_number,
                      function_name(cell), safe_bit_name(control->cell_spec->safe_bit),
                      control->cell_number, function_name(control));
}

// The safe value of a control cell must disable what the cell controls. Safe bits and disable
// values have the same codes. Reports all entries with another disable value, in table order.
static int32_t check_disable_values(const CellCheck *check, const ControlGroup *group,
                                    const CellEntry *control)
{
    int32_t safe_bit = control->cell_spec->safe_bit;
    if (safe_bit == SAFE_BIT_X)
        return BSDL_RESULT_OK;
    uint32_t at[ControlGroup::VALUES];
    std::copy_n(group->first, ControlGroup::VALUES, at);
    at[safe_bit] = INDEX_NONE;
    int32_t result = BSDL_RESULT_OK;
    for (;;) {
        uint32_t *next = std::min_element(at, at + ControlGroup::VALUES);
        if (*next == INDEX_NONE)
            return result;
        result |= report_disable_value(check->cells[*next], control);
        *next = check->next_in_group[*next];
    }
}

static int32_t check_control_use(CellCheck *check, const CellEntry *control)
{
    uint32_t place = index_find(&check->groups, control->cell_number);
    if (place == INDEX_NONE)
        return rule_error({"control-cell-unused", cell_place(control, CELL_NUMBER)},
                          "cell_number %i with function '%s' does not control any cell",
                          control->cell_number, function_name(control));
    ControlGroup *group = &check->group[place];
    int32_t result = check_disable_values(check, group, control);
    mark_controlled(check, group);
    return result;
}

// -------------------------------------------------------------------------- disable specifications

static int32_t check_control_range(const CellCheck *check, const CellEntry *cell)
{
    if (static_cast<uint32_t>(cell->disable_spec->ccell) < check->length)
        return BSDL_RESULT_OK;
    return rule_error(
        {"control-cell-range", cell_place(cell, CELL_CONTROL)},
        "cell_number %i uses cell %i as control_cell this cell number is out of range",
        cell->cell_number, cell->disable_spec->ccell);
}

static int32_t check_undriven(CellCheck *check, const CellEntry *cell)
{
    int32_t function = cell->cell_spec->function;
    bool is_control = function == CELL_FUNCTION_CONTROL || function == CELL_FUNCTION_CONTROLR;
    int32_t result = BSDL_RESULT_OK;
    if (cell->disable_spec)
        result |= rule_error({"cell-disable-spec-forbidden", cell_place(cell, CELL_DISABLE_SPEC)},
                             "cell_number %i with function '%s' cannot contain a disable_spec",
                             cell->cell_number, function_name(cell));
    if ((is_control || function == CELL_FUNCTION_INTERNAL) && cell->cell_spec->port)
        result |=
            rule_error({"cell-port-forbidden", cell_place(cell, CELL_PORT)},
                       "cell_number %i with function '%s' must have port_id '*' instead of %s",
                       cell->cell_number, function_name(cell), port_text(cell->cell_spec->port));
    if (is_control)
        result |= check_control_use(check, cell);
    return result;
}

// A driver that its own value disables is an open output: it can only pull away from that value.
static int32_t check_self_disable(const CellEntry *cell, int32_t level)
{
    static constexpr struct {
        int32_t weak, pull;
    } allowed[] = {
        {DISABLE_RESULT_NONE, DISABLE_RESULT_NONE},
        {DISABLE_RESULT_WEAK0, DISABLE_RESULT_PULL0},
        {DISABLE_RESULT_WEAK1, DISABLE_RESULT_PULL1},
    };
    const DisableSpec *spec = cell->disable_spec;
    auto [weak, pull] = allowed[spec->disable_value];
    if (spec->disable_value == DISABLE_VALUE_NONE || spec->disable_result == weak ||
        spec->disable_result == pull)
        return BSDL_RESULT_OK;
    return rule_message(level, 2,
                        {"cell-self-disable-result", cell_place(cell, CELL_DISABLE_RESULT)},
                        "cell_number %i with function '%s' and disable_value '%s' must have "
                        "disable_result '%s' or '%s' instead of '%s'",
                        cell->cell_number, function_name(cell),
                        disable_value_name(spec->disable_value), disable_result_name(weak),
                        disable_result_name(pull), disable_result_name(spec->disable_result));
}

static bool controls_itself(const CellEntry *cell)
{
    return static_cast<uint32_t>(cell->disable_spec->ccell) == cell->cell_number;
}

// An OUTPUT3 cell that names itself is left to the control walk, which finds no control cell there.
static int32_t check_three_state(const CellCheck *check, const CellEntry *cell)
{
    if (!cell->disable_spec)
        return rule_error({"cell-disable-spec-missing", cell_place(cell, CELL_FUNCTION)},
                          "cell_number %i with function '%s' must contain a disable_spec",
                          cell->cell_number, function_name(cell));
    if (cell->cell_spec->function == CELL_FUNCTION_OUTPUT3 || !controls_itself(cell))
        return BSDL_RESULT_OK;
    int32_t result = BSDL_RESULT_OK;
    if (bsdlIs2001(check->bsdl))
        result |= check_self_disable(cell, BSDL_LEVEL_ERROR);
    cell->disable_spec->control_seen = 1;
    return result;
}

// Counts as controlled even when it names another cell.
static int32_t check_two_state(const CellCheck *check, const CellEntry *cell)
{
    const Bsdl *bsdl = check->bsdl;
    if (!cell->disable_spec)
        return BSDL_RESULT_OK;
    int32_t result = BSDL_RESULT_OK;
    if (!controls_itself(cell))
        result |= rule_strict(bsdl, {"cell-open-output-control", cell_place(cell, CELL_CONTROL)},
                              "cell_number %i with function '%s' and a disable_spec must control "
                              "itself, ccell (%i) must be equal to %i",
                              cell->cell_number, function_name(cell), cell->disable_spec->ccell,
                              cell->cell_number);
    else if (bsdlIs2001(check->bsdl))
        result |= check_self_disable(cell, bsdl->strict ? BSDL_LEVEL_ERROR : BSDL_LEVEL_WARNING);
    cell->disable_spec->control_seen = 1;
    return result;
}

static int32_t check_control(CellCheck *check, const CellEntry *cell)
{
    int32_t result = BSDL_RESULT_OK;
    if (cell->disable_spec)
        result |= check_control_range(check, cell);
    switch (cell->cell_spec->function) {
    case CELL_FUNCTION_INPUT:
    case CELL_FUNCTION_CONTROL:
    case CELL_FUNCTION_CONTROLR:
    case CELL_FUNCTION_INTERNAL:
    case CELL_FUNCTION_OBSERVE_ONLY:
    case CELL_FUNCTION_CLOCK:
        return result | check_undriven(check, cell);
    case CELL_FUNCTION_OUTPUT3:
    case CELL_FUNCTION_BIDIR:
        return result | check_three_state(check, cell);
    case CELL_FUNCTION_OUTPUT2:
        return result | check_two_state(check, cell);
    default:
        return result;
    }
}

// Compares results although its text says disable_value.
static int32_t check_shared_control(const CellCheck *check, const CellEntry *cell)
{
    const DisableSpec *spec = cell->disable_spec;
    int32_t result = BSDL_RESULT_OK;
    for (uint32_t i = cell->position + 1; i < check->count; i++) {
        const CellEntry *other = check->cells[i];
        if (!other->disable_spec || other->disable_spec->ccell != spec->ccell ||
            other->disable_spec->disable_result == spec->disable_result)
            continue;
        result |= rule_error(
            {"control-cell-shared", cell_place(other, CELL_DISABLE_RESULT)},
            "cell_number %i with function '%s' does controlled by %i has a different disable_value "
            "(%s - %s) from cell_number %i with function '%s', also controlled by cell_number %i",
            cell->cell_number, function_name(cell), spec->ccell,
            disable_result_name(spec->disable_result),
            disable_result_name(other->disable_spec->disable_result), other->cell_number,
            function_name(other), spec->ccell); /* as is */
    }
    return result;
}

static int32_t check_controlled(const CellCheck *check, const CellEntry *cell)
{
    if (!cell->disable_spec)
        return BSDL_RESULT_OK;
    int32_t result = BSDL_RESULT_OK;
    if (!cell->disable_spec->control_seen)
        result |=
            rule_strict(check->bsdl, {"control-cell-function", cell_place(cell, CELL_CONTROL)},
                        "cell_number %i with function '%s' uses cell %i as control_cell but "
                        "this is not a control_cell",
                        cell->cell_number, function_name(cell), cell->disable_spec->ccell);
    // No description names two issues of the standard, so this rule never applies.
    if (bsdlIs1994(check->bsdl) && bsdlIs2001(check->bsdl))
        result |= check_shared_control(check, cell);
    return result;
}

// ------------------------------------------------------------------------------------- the check

static int32_t check_cells(CellCheck *check)
{
    int32_t result = check_numbers(check);
    for (uint32_t i = 0; i < check->count; i++) {
        CellEntry *cell = check->cells[i];
        result |= check_number(check, cell);
        result |= check_merged(cell);
        result |= check_cell_desc(check, cell);
        if (cell->cell_spec->port)
            result |= check_cell_port(check->bsdl, cell);
        result |= check_control(check, cell);
    }
    // Only now: a control cell may come after the cells that it controls.
    for (uint32_t i = 0; i < check->count; i++)
        result |= check_controlled(check, check->cells[i]);
    result |= check_missing_cells(check->bsdl);
    note_disabled_pins(check->bsdl);
    return result;
}

static int32_t check_boundary_register(CellCheck *check)
{
    Bsdl *bsdl = check->bsdl;
    const Lookups *lookups = cell_lookups(bsdl);
    if (!lookups)
        return BSDL_RESULT_FAILED;
    check->length = bsdl->data->boundary_register->boundary_length;
    check->cells = lookups->cell_table;
    check->count = lookups->cell_count;
    group_by_control_cell(check);
    if (check->scratch.failed)
        return BSDL_RESULT_FAILED;
    check->opcode_has_intest = find_instruction(bsdl, model_name(bsdl, "INTEST"));
    return check_cells(check);
}

int32_t bsdl_check_bsr(Bsdl *h)
{
    const Call call(h);
    if (call.code)
        return call.code;
    const BsdlData *data = h->data;
    if (!data->boundary_register || !data->boundary_register->cell_table || !data->logical_ports ||
        !data->instruction_register || !data->pins)
        return BSDL_RESULT_MISSING;
    CellCheck check = {};
    check.bsdl = h;
    if (check.scratch.failed)
        return BSDL_RESULT_FAILED;
    int32_t result = check_boundary_register(&check);
    return check_end(h, result, &check.scratch);
}
