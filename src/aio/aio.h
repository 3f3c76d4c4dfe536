#pragma once

#include "frame/lookup.h"
#include "frame/model.h"

struct ClockCycles;
struct PinSpec;

struct AioPulse {
    ClockCycles *clock_cycles; // NULL when a time is given
    float time;                // seconds; 0 when clock cycles are given
    Place place;
};

struct AioTrain {
    int32_t pulse_count;
    float max_time; // seconds; 0 when none is given
    Place place;
};

struct AioExtest {
    AioPulse *pulse;
    AioTrain *train;
};

struct AioHpTime {
    float hp_time;
    int32_t on_chip;
};

struct AioTimeConstants {
    float lp_time; // 0 when none is given
    AioHpTime *hp;
    int32_t select_cell; // AIO_NO_SELECT_CELL without one
    Place select_place;
    Place lp_place;
    Place hp_place;
};

constexpr int32_t AIO_NO_SELECT_CELL = -1;

struct AioPort {
    PortId *port_id;
    PinSpec *pin_spec; // set by the check
    // Cell numbers, held in the data pointers. bsdlAioThisPinBehavior() moves the head on.
    GSList *input_cells;
    Place place;
};

struct AioPinInfo {
    GSList *ports;
    AioTimeConstants *time_constants;
    Place place;
};

// All ports of all descriptions in one array, for bsdlAioThisPinBehavior(). Those before `begun`
// have no input cells left.
struct AioPortTable {
    AioPort **ports;
    const AioPinInfo **infos;
    uint32_t count;
    uint32_t begun;
    Index by_name; // fold number -> first of that name
    Index by_port; // port_key -> first of that port
    bool built;
};

// What the queries return, by address, and where they stand.
struct AioQueryState {
    GSList *pin_cursor;
    GSList *port_cursor;
    GSList *cell_cursor;
    AioPinResult pin;
    PortId port;
    AioPulseResult pulse;
    AioTrainResult train;
    AioPortTable table;
};

struct AioData {
    int32_t conformance; // AioConformance
    AioExtest *extest;
    GSList *pin_behaviors; // AioPinInfo
    AioQueryState *query_state;
    Place place;
    ListWalk pin_behavior_walk;
};

// From here to the end of the family the words of IEEE 1149.6 are in force, whatever other
// extension the description uses.
void aio_words_begin(Bsdl *bsdl);

AioPulse *aio_pulse_new(Bsdl *bsdl, ClockCycles *clock_cycles, double time);
AioTrain *aio_train_new(Bsdl *bsdl, int32_t pulse_count, double max_time);
AioHpTime *aio_hp_time_new(Bsdl *bsdl, double time, int32_t on_chip);
AioTimeConstants *aio_time_constants_new(Bsdl *bsdl, double lp_time, Place lp_place, AioHpTime *hp,
                                         Place hp_place);
AioTimeConstants *aio_select_cell(AioTimeConstants *constants, int32_t cell, Place place);
List aio_input_cells(Bsdl *bsdl, List cells, int32_t number);
AioPort *aio_port_new(Bsdl *bsdl, PortId *port_id, List input_cells, Place place);
AioPinInfo *aio_pin_info_new(Bsdl *bsdl, List ports, AioTimeConstants *constants, Place place);
AioExtest *aio_extest_new(Bsdl *bsdl, AioPulse *pulse, AioTrain *train);

int32_t aio_conformance_passed(Bsdl *bsdl, int32_t conformance);
int32_t aio_conformance_skipped(Bsdl *bsdl);
AioPulse *aio_pulse_passed(Bsdl *bsdl, AioPulse *pulse, Place place);
AioPulse *aio_pulse_skipped(Bsdl *bsdl);
AioTrain *aio_train_passed(Bsdl *bsdl, AioTrain *train, Place place);
AioTrain *aio_train_skipped(Bsdl *bsdl);
List aio_pin_behavior_passed(Bsdl *bsdl, List infos);

// The whole family has been read.
void aio_data_made(Bsdl *bsdl, int32_t conformance, AioExtest *extest, List pin_behaviors,
                   Place place);
AioData *aio_data_new(Bsdl *bsdl, Place place);
