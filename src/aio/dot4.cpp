// Queries on the built-in table of IEEE 1149.4 devices. There is no statement for them: a device is
// known by its name.

#include "base/names.h"
#include "frame/reader_state.h"
#include "tarnlet/bsdl.h"

#include <iterator>

namespace
{

struct Device {
    const char *component_name;
    const D4AtBus *at_bus;
    uint32_t partition_count;
    const D4Partition *partitions;
    uint32_t abm_count;
    const D4Abm *abms;
};

// The records that are handed out point to their ports without const, but they are constant.
constexpr PortId pin(const char *name) { return {.name = name, .subscripted = 0, .subscript = 0}; }

constexpr PortId PINS[] = {pin("A01"), pin("C0"), pin("A23"), pin("CEI"), pin("MODE"), pin("CE"),
                           pin("A3"),  pin("A1"), pin("C1"),  pin("A2"),  pin("A0")};
constexpr PortId AT1 = pin("AT1");
constexpr PortId AT2 = pin("AT2");

constexpr D4Abm abm(int32_t number, int32_t a, int32_t b, int32_t c, int32_t d)
{
    return {.abm_number = number,
            .pin = const_cast<PortId *>(&PINS[number]),
            .value = {a, b, c, d, 0, 3, 3, 0, -1, 0, 0, 0}};
}

constexpr D4AtBus AT_BUS = {const_cast<PortId *>(&AT1), const_cast<PortId *>(&AT2), {20, 21}};
constexpr D4Partition PARTITIONS[] = {{{0, 22, 23, 3, 3, 0}}};
// clang-format off
constexpr D4Abm ABMS[] = {
    abm(0, 3, 2, 0, 1),      abm(1, 7, 6, 4, 5),      abm(2, 11, 10, 8, 9),
    abm(3, 15, 14, 12, 13),  abm(4, 19, 18, 16, 17),  abm(5, 27, 26, 24, 25),
    abm(6, 31, 30, 28, 29),  abm(7, 35, 34, 32, 33),  abm(8, 39, 38, 36, 37),
    abm(9, 43, 42, 40, 41),  abm(10, 47, 46, 44, 45),
};
// clang-format on

constexpr Device DEVICES[] = {
    {"scansta400", &AT_BUS, std::size(PARTITIONS), PARTITIONS, std::size(ABMS), ABMS},
};

constexpr int32_t NOT_SEARCHED = -2;
constexpr int32_t NOT_FOUND = -1;

} // namespace

static int32_t device_row(const char *component_name)
{
    for (size_t row = 0; component_name && row < std::size(DEVICES); row++)
        if (same_text(component_name, DEVICES[row].component_name))
            return static_cast<int32_t>(row);
    return NOT_FOUND;
}

int32_t bsdlDot4(Bsdl *h)
{
    // The first component that is asked about decides for the thread.
    if (reader_state.d4_device == NOT_SEARCHED)
        reader_state.d4_device = device_row(bsdlComponentName(h));
    return reader_state.d4_device >= 0;
}

static const Device *device_of(Bsdl *h)
{
    if (reader_state.d4_device < 0 && !bsdlDot4(h))
        return nullptr;
    return &DEVICES[reader_state.d4_device];
}

// The record after the cursor. The cursor stays at the end.
template <class T> static const T *next_of(const T *records, uint32_t count, uint32_t *cursor)
{
    if (*cursor < count)
        ++*cursor;
    return *cursor < count ? &records[*cursor] : nullptr;
}

const D4AtBus *btslD4AtBus(Bsdl *h)
{
    const Device *device = device_of(h);
    return device ? device->at_bus : nullptr;
}

int32_t btslD4NbrABMs(Bsdl *h)
{
    const Device *device = device_of(h);
    return device ? static_cast<int32_t>(device->abm_count) : -1;
}

const D4Abm *btslD4FirstABM(Bsdl *h)
{
    const Device *device = device_of(h);
    if (!device)
        return nullptr;
    reader_state.d4_abm_cursor = 0;
    return device->abms;
}

const D4Abm *btslD4NextABM(Bsdl *h)
{
    const Device *device = device_of(h);
    return device ? next_of(device->abms, device->abm_count, &reader_state.d4_abm_cursor) : nullptr;
}

int32_t btslD4TbicNbrPartitions(Bsdl *h)
{
    const Device *device = device_of(h);
    return device ? static_cast<int32_t>(device->partition_count) : -1;
}

const D4Partition *btslD4TbicFirstPartitions(Bsdl *h)
{
    const Device *device = device_of(h);
    if (!device)
        return nullptr;
    reader_state.d4_partition_cursor = 0;
    return device->partitions;
}

const D4Partition *btslD4TbicNextPartitions(Bsdl *h)
{
    const Device *device = device_of(h);
    return device ? next_of(device->partitions, device->partition_count,
                            &reader_state.d4_partition_cursor)
                  : nullptr;
}
