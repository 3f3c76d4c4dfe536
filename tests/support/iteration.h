#pragma once

#include "frame/model.h"
#include "support/description.h"

namespace support
{

inline std::string text_of(const char *text) { return text ? text : "none"; }

inline std::string text_of(const PortId *port)
{
    if (!port)
        return "none";
    return port->name + (port->subscripted ? "(" + std::to_string(port->subscript) + ")" : "");
}

inline std::string text_of(PinEntry *pin) { return text_of(bsdlGetPinPortID(pin)); }

inline std::string text_of(InstructionEntry *entry)
{
    return text_of(bsdlGetInstructionName(entry));
}

// A First/Next pair that has not been used gives these elements: Next alone begins with the second,
// stands still beyond the end, and First begins anew.
template <class Owner, class Element>
void expect_iteration(Owner *owner, Element *(*first)(Owner *), Element *(*next)(Owner *),
                      const std::vector<std::string> &elements)
{
    for (int round = 0; round < 3; round++) {
        if (round) {
            EXPECT_EQ(text_of(first(owner)), elements.empty() ? "none" : elements[0]);
        }
        for (size_t i = 1; i < elements.size(); i++)
            EXPECT_EQ(text_of(next(owner)), elements[i]);
        for (int beyond = 0; beyond < 3; beyond++)
            EXPECT_EQ(text_of(next(owner)), "none");
    }
}

} // namespace support
