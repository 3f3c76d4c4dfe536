#include "support/description.h"

#include <set>

using namespace support;

namespace
{

using support::Reading;

// Only the name counts: the attributes of the other name end the reading early.
Description named(const std::string &name)
{
    return Description()
        .with(ENTITY_LINE, "entity " + name + " is")
        .with(CONFORMANCE, "")
        .with(PIN_MAP_LINE, "attribute PIN_MAP of " + name + " : entity is PHYSICAL_PIN_MAP;")
        .with(EXTENSIONS, "");
}

// The table is searched once for a thread.
class Dot4 : public ::testing::Test
{
  protected:
    void SetUp() override { reset_reader_state(); }
    void TearDown() override { reset_reader_state(); }
};

void expect_none(Bsdl *handle)
{
    EXPECT_EQ(bsdlDot4(handle), 0);
    EXPECT_EQ(btslD4AtBus(handle), nullptr);
    EXPECT_EQ(btslD4NbrABMs(handle), -1);
    EXPECT_EQ(btslD4FirstABM(handle), nullptr);
    EXPECT_EQ(btslD4NextABM(handle), nullptr);
    EXPECT_EQ(btslD4TbicNbrPartitions(handle), -1);
    EXPECT_EQ(btslD4TbicFirstPartitions(handle), nullptr);
    EXPECT_EQ(btslD4TbicNextPartitions(handle), nullptr);
}

TEST_F(Dot4, RecordsOfTheDevice)
{
    Reading reading(named("ScanSTA400"));
    EXPECT_EQ(btslD4NbrABMs(reading), 11);
    EXPECT_EQ(btslD4TbicNbrPartitions(reading), 1);
    // Each switch has a number of its own.
    std::set<int32_t> numbers;
    int count = 0;
    for (const D4Abm *abm = btslD4FirstABM(reading); abm; abm = btslD4NextABM(reading), count++) {
        EXPECT_EQ(abm->abm_number, count);
        EXPECT_FALSE(abm->pin->subscripted);
        numbers.insert(abm->value, abm->value + 4);
        const std::vector<int32_t> rest(abm->value + 4, abm->value + 12);
        EXPECT_EQ(rest, (std::vector<int32_t>{0, 3, 3, 0, -1, 0, 0, 0}));
    }
    EXPECT_EQ(count, 11);
    const D4AtBus *bus = btslD4AtBus(reading);
    ASSERT_NE(bus, nullptr);
    EXPECT_STREQ(bus->at1->name, "AT1");
    numbers.insert(bus->value, bus->value + 2);
    const D4Partition *partition = btslD4TbicFirstPartitions(reading);
    ASSERT_NE(partition, nullptr);
    numbers.insert(partition->value + 1, partition->value + 3);
    EXPECT_EQ(numbers.size(), 48U);
    EXPECT_EQ(*numbers.rbegin(), 47);
    EXPECT_STREQ(btslD4FirstABM(reading)->pin->name, "A01");
    EXPECT_EQ(btslD4FirstABM(reading)->value[0], 3);
}

TEST_F(Dot4, NextWithoutFirst)
{
    Reading reading(named("scansta400"));
    EXPECT_EQ(btslD4NextABM(reading)->abm_number, 1);
    for (int i = 0; i < 20; i++)
        btslD4NextABM(reading);
    EXPECT_EQ(btslD4NextABM(reading), nullptr);
    EXPECT_EQ(btslD4TbicNextPartitions(reading), nullptr);
    EXPECT_EQ(btslD4FirstABM(reading)->abm_number, 0);
}

TEST_F(Dot4, TheFirstAnswerStaysForTheProcess)
{
    Reading device(named("SCANSTA400"));
    Reading other(named("SCANSTA4001"));
    ASSERT_STREQ(bsdlComponentName(device), "SCANSTA400");

    expect_none(other);
    expect_none(device);

    reset_reader_state();
    expect_none(nullptr);
    expect_none(device);

    reset_reader_state();
    EXPECT_EQ(bsdlDot4(device), 1);
    EXPECT_EQ(btslD4NbrABMs(other), 11);
    EXPECT_EQ(btslD4FirstABM(nullptr)->abm_number, 0);
    Reading later{Description()};
    EXPECT_EQ(bsdlDot4(later), 1);
}

} // namespace
