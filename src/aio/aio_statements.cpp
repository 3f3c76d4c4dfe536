// What the grammar calls for the statements of IEEE 1149.6.

#include "aio/aio.h"
#include "boundary/boundary.h"
#include "frame/messages.h"
#include "scan/scanner.h"

namespace
{

// The 1149.6 bits of `standards` alone are not ignored.
constexpr uint64_t AIO_STANDARDS_FILTER = ~uint64_t{0x3C0000};

} // namespace

void aio_words_begin(Bsdl *bsdl) { scan_standards(bsdl, bsdl->standards, AIO_STANDARDS_FILTER); }

AioPulse *aio_pulse_new(Bsdl *bsdl, ClockCycles *clock_cycles, double time)
{
    auto *pulse = model_new<AioPulse>(bsdl);
    pulse->clock_cycles = clock_cycles;
    pulse->time = seconds_from(time);
    return pulse;
}

AioTrain *aio_train_new(Bsdl *bsdl, int32_t pulse_count, double max_time)
{
    auto *train = model_new<AioTrain>(bsdl);
    train->pulse_count = pulse_count;
    train->max_time = seconds_from(max_time);
    return train;
}

AioHpTime *aio_hp_time_new(Bsdl *bsdl, double time, int32_t on_chip)
{
    auto *hp = model_new<AioHpTime>(bsdl);
    hp->hp_time = seconds_from(time);
    hp->on_chip = on_chip;
    return hp;
}

AioTimeConstants *aio_time_constants_new(Bsdl *bsdl, double lp_time, Place lp_place, AioHpTime *hp,
                                         Place hp_place)
{
    auto *constants = model_new<AioTimeConstants>(bsdl);
    constants->lp_time = seconds_from(lp_time);
    constants->lp_place = lp_place;
    constants->hp = hp;
    constants->hp_place = hp_place;
    return constants;
}

AioTimeConstants *aio_select_cell(AioTimeConstants *constants, int32_t cell, Place place)
{
    constants->select_cell = cell;
    constants->select_place = place;
    return constants;
}

List aio_input_cells(Bsdl *bsdl, List cells, int32_t number)
{
    return model_append(bsdl, cells, GINT_TO_POINTER(number));
}

AioPort *aio_port_new(Bsdl *bsdl, PortId *port_id, List input_cells, Place place)
{
    auto *port = model_new<AioPort>(bsdl);
    port->port_id = port_id;
    port->input_cells = input_cells.head;
    port->place = place;
    return port;
}

AioPinInfo *aio_pin_info_new(Bsdl *bsdl, List ports, AioTimeConstants *constants, Place place)
{
    auto *info = model_new<AioPinInfo>(bsdl);
    info->ports = ports.head;
    info->time_constants = constants;
    info->place = place;
    return info;
}

AioExtest *aio_extest_new(Bsdl *bsdl, AioPulse *pulse, AioTrain *train)
{
    auto *extest = model_new<AioExtest>(bsdl);
    extest->pulse = pulse;
    extest->train = train;
    return extest;
}

int32_t aio_conformance_passed(Bsdl *bsdl, int32_t conformance)
{
    statement_passed(bsdl, "\tAIO_Component_Conformance statement passed");
    return conformance;
}

int32_t aio_conformance_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping AIO_Component_Conformance due to errors");
    return AIO_CONFORMANCE_NONE;
}

AioPulse *aio_pulse_passed(Bsdl *bsdl, AioPulse *pulse, Place place)
{
    pulse->place = place;
    statement_passed(bsdl, "\tAIO_EXTEST_Pulse_Execution statement passed");
    return pulse;
}

AioPulse *aio_pulse_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping AIO_EXTEST_Pulse_Execution due to errors");
    return nullptr;
}

AioTrain *aio_train_passed(Bsdl *bsdl, AioTrain *train, Place place)
{
    train->place = place;
    statement_passed(bsdl, "\tAIO_EXTEST_Train_Execution statement passed");
    return train;
}

AioTrain *aio_train_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping AIO_EXTEST_Train_Execution due to errors");
    return nullptr;
}

List aio_pin_behavior_passed(Bsdl *bsdl, List infos)
{
    statement_passed(bsdl, "\tAIO_Pin_Behavior statement passed");
    return infos;
}

AioData *aio_data_new(Bsdl *bsdl, Place place)
{
    auto *data = model_new<AioData>(bsdl);
    data->place = place;
    bsdl->data->aio = data;
    return data;
}

void aio_data_made(Bsdl *bsdl, int32_t conformance, AioExtest *extest, List pin_behaviors,
                   Place place)
{
    scan_standards(bsdl, bsdl->standards, 0);
    AioData *data = aio_data_new(bsdl, place);
    data->conformance = conformance;
    data->extest = extest;
    data->pin_behaviors = pin_behaviors.head;
}
