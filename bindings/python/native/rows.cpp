#include "rows.h"

#include "code_words.h"
#include "device_json.h"

namespace
{

struct RowRecords {
    Codes pin_type{"PinType", pin_type_word};
    Codes pin_function{"PinFunction", pin_function_word};
    Codes cell_function{"CellFunction", cell_function_word};
    Codes safe_bit{"SafeBit", safe_bit_word};
    Codes disable_value{"DisableValue", disable_value_word};
    Codes disable_result{"DisableResult", disable_result_word};

    Record<5> pin{"Pin"};
    Record<8> cell_row{"CellRow"};
};

} // namespace

static const RowRecords &records()
{
    static const RowRecords instance;
    return instance;
}

void load_row_types() { records(); }

py::object pin_rows(Bsdl *bsdl)
{
    std::unordered_map<std::string, Rows> cells_of_port;
    for (CellEntry *cell = bsdlGetFirstCellEntry(bsdl); cell; cell = bsdlGetNextCellEntry(bsdl))
        cells_of_port[port_key(bsdlGetCellPort(cell))].add(number(bsdlGetCellNumber(cell)));
    cells_of_port.erase("");

    Rows pins;
    const py::object no_cells = py::tuple();
    for (PinEntry *pin = bsdlGetFirstPin(bsdl); pin; pin = bsdlGetNextPin(bsdl)) {
        const PortId *port = bsdlGetPinPortID(pin);
        const auto cells = cells_of_port.find(port_key(port));
        pins.add(records().pin(port_bit(port), text(bsdlGetPinPhysicalName(pin)),
                               records().pin_type[bsdlGetPinType(pin)],
                               records().pin_function[bsdlGetPinFunction(pin)],
                               cells == cells_of_port.end() ? no_cells : cells->second.tuple()));
    }
    return pins.tuple();
}

py::object cell_rows(Bsdl *bsdl)
{
    Rows cells;
    // Most rows name the cell type of the row before, which then is the same object.
    std::string_view type_name;
    py::object type = py::none();
    for (CellEntry *cell = bsdlGetFirstCellEntry(bsdl); cell; cell = bsdlGetNextCellEntry(bsdl)) {
        if (const char *name = bsdlGetCellName(cell); !name || name != type_name) {
            type_name = name ? name : "";
            type = text(name);
        }
        cells.add(records().cell_row(number(bsdlGetCellNumber(cell)), type,
                                     port_bit(bsdlGetCellPort(cell)),
                                     records().cell_function[bsdlGetCellFunction(cell)],
                                     records().safe_bit[bsdlGetCellSafeBit(cell)],
                                     number_from(0, bsdlGetCellControlCell(cell)),
                                     records().disable_value[bsdlGetCellDisableValue(cell)],
                                     records().disable_result[bsdlGetCellDisableResult(cell)]));
    }
    return cells.tuple();
}
