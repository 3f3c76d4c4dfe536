// The layout of the public records, for both languages: hosts are compiled against it and read
// the fields in place, so a field that moves breaks them without a word from their linker.
// The numbers are those of targets with 64-bit pointers.
#ifndef TESTS_PACKAGING_HEADER_LAYOUT_H
#define TESTS_PACKAGING_HEADER_LAYOUT_H

#include <assert.h>
#include <stddef.h>

#define SIZE(record, size) static_assert(sizeof(record) == (size), "size of " #record)
#define FIELD(record, field, offset, size)                                                         \
    static_assert(offsetof(record, field) == (offset) && sizeof(((record *)0)->field) == (size),   \
                  #record "." #field)

SIZE(BsdlMessage, 32);
FIELD(BsdlMessage, level, 0, 4);
FIELD(BsdlMessage, verbosity, 4, 4);
FIELD(BsdlMessage, code, 8, 4);
FIELD(BsdlMessage, text, 16, 8);
FIELD(BsdlMessage, formatted, 24, 4);

SIZE(BsdlContext, 24);
FIELD(BsdlContext, message_sink, 0, 8);
FIELD(BsdlContext, sink_data, 8, 8);
FIELD(BsdlContext, verbosity, 16, 4);

SIZE(PortId, 16);
FIELD(PortId, name, 0, 8);
FIELD(PortId, subscripted, 8, 4);
FIELD(PortId, subscript, 12, 4);

SIZE(PortGroup, 24);
FIELD(PortGroup, type, 0, 4);
FIELD(PortGroup, representative, 8, 8);
FIELD(PortGroup, associated, 16, 8);

SIZE(IscSecurity, 20);
FIELD(IscSecurity, disable_read, 0, 4);
FIELD(IscSecurity, disable_program, 4, 4);
FIELD(IscSecurity, disable_erase, 8, 4);
FIELD(IscSecurity, disable_key_lsb, 12, 4);
FIELD(IscSecurity, disable_key_msb, 16, 4);

SIZE(IscAction, 40);
FIELD(IscAction, action_name, 0, 8);
FIELD(IscAction, data_name, 8, 8);
FIELD(IscAction, exclusivity, 16, 4);
FIELD(IscAction, specs, 24, 8);
FIELD(IscAction, spec_cursor, 32, 4);

SIZE(IscActionSpec, 24);
FIELD(IscActionSpec, procedure_name, 0, 8);
FIELD(IscActionSpec, data_name, 8, 8);
FIELD(IscActionSpec, attributes, 16, 4);

SIZE(IscExpression, 32);
FIELD(IscExpression, operation, 0, 4);
FIELD(IscExpression, variable_index, 4, 4);
FIELD(IscExpression, operand, 8, 4);
FIELD(IscExpression, hex_string, 16, 8);
FIELD(IscExpression, is_definition, 24, 4);

SIZE(IscUpdateField, 16);
FIELD(IscUpdateField, field_width, 0, 4);
FIELD(IscUpdateField, expression, 8, 8);

SIZE(IscCaptureField, 40);
FIELD(IscCaptureField, field_width, 0, 4);
FIELD(IscCaptureField, expected, 8, 8);
FIELD(IscCaptureField, expected_output, 16, 4);
FIELD(IscCaptureField, mask, 24, 8);
FIELD(IscCaptureField, mask_output, 32, 4);
FIELD(IscCaptureField, tag, 36, 4);

SIZE(IscActivityInfo, 32);
FIELD(IscActivityInfo, instruction_name, 0, 8);
FIELD(IscActivityInfo, v, 8, 16);
FIELD(IscActivityInfo, reserved, 24, 8);

SIZE(IscFlowInfo, 24);
FIELD(IscFlowInfo, flow_name, 0, 8);
FIELD(IscFlowInfo, data_name, 8, 8);
FIELD(IscFlowInfo, flags, 16, 4);
FIELD(IscFlowInfo, variable_count, 20, 4);

SIZE(AioPulseResult, 8);
FIELD(AioPulseResult, cycle_count, 0, 4);
FIELD(AioPulseResult, time, 4, 4);

SIZE(AioTrainResult, 8);
FIELD(AioTrainResult, pulse_count, 0, 4);
FIELD(AioTrainResult, max_time, 4, 4);

SIZE(AioPinResult, 32);
FIELD(AioPinResult, port, 0, 8);
FIELD(AioPinResult, flags, 8, 4);
FIELD(AioPinResult, select_cell, 12, 4);
FIELD(AioPinResult, lp_time, 16, 4);
FIELD(AioPinResult, hp_time, 20, 4);
FIELD(AioPinResult, input_cell, 24, 4);

SIZE(D4AtBus, 24);
FIELD(D4AtBus, at1, 0, 8);
FIELD(D4AtBus, at2, 8, 8);
FIELD(D4AtBus, value, 16, 8);

SIZE(D4Partition, 24);
FIELD(D4Partition, value, 0, 24);

SIZE(D4Abm, 64);
FIELD(D4Abm, abm_number, 0, 4);
FIELD(D4Abm, pin, 8, 8);
FIELD(D4Abm, value, 16, 48);

SIZE(PrgComponentSetting, 24);
FIELD(PrgComponentSetting, part_name, 0, 8);
FIELD(PrgComponentSetting, instruction_name, 8, 8);
FIELD(PrgComponentSetting, register_values, 16, 8);

SIZE(PrgProgramSpec, 48);
FIELD(PrgProgramSpec, program_type, 0, 4);
FIELD(PrgProgramSpec, part_name, 8, 8);
FIELD(PrgProgramSpec, part_type, 16, 8);
FIELD(PrgProgramSpec, in_file, 24, 8);
FIELD(PrgProgramSpec, out_file, 32, 8);
FIELD(PrgProgramSpec, component, 40, 8);

#undef SIZE
#undef FIELD

#endif
