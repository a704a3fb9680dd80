#include "simulator/model/EventAlgorithm.h"

#include "platform/stack/codec/Reader.h"
#include "simulator/model/Reference.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

using bacnet::Reader;
using bacnet::Writer;
using Octets = std::span<const std::uint8_t>;

constexpr int TIME_DELAY = 0; // context tag in the parameters of most

// ---- numbers

enum class Form : std::uint8_t { real, wide, whole, natural };

bool ReadNumber(Reader& in, Form form, int tag, double& number) {
    float real = 0;
    std::int32_t whole = 0;
    std::uint32_t natural = 0;
    switch (form) {
    case Form::real:
        return in.Real(real, tag) && (number = real, true);
    case Form::wide:
        return in.Double(number, tag);
    case Form::whole:
        return in.Signed(whole, tag) && (number = whole, true);
    case Form::natural:
        return in.Unsigned(natural, tag) && (number = natural, true);
    }
    return false;
}

void PutNumber(Writer& to, Form form, double number, int tag) {
    switch (form) {
    case Form::real:
        return to.Real(static_cast<float>(number), tag);
    case Form::wide:
        return to.Double(number, tag);
    case Form::whole:
        return to.Signed(static_cast<std::int32_t>(number), tag);
    case Form::natural:
        return to.Unsigned(static_cast<std::uint32_t>(std::max(number, 0.0)), tag);
    }
}

double NumberOf(const Value& value) {
    return NumberIn(value.Wire()).value_or(0);
}

bool ReadNumberOf(const Object& object, BACSTAC_PROPERTY_ID property, double& number) {
    const Value* value = object.Find(property);
    const auto read = value == nullptr ? std::nullopt : NumberIn(value->Wire());
    number = read.value_or(number);
    return read.has_value();
}

// ---- alarm values

BACSTAC_BIT_STRING BitsOf(const Value& value) {
    BACSTAC_BIT_STRING bits{};
    Reader(value.Wire()).BitString(bits);
    return bits;
}

BACSTAC_BIT_STRING Masked(BACSTAC_BIT_STRING bits, const BACSTAC_BIT_STRING& mask) {
    for (std::size_t i = 0; i < std::size(bits.Bits); ++i)
        bits.Bits[i] = bits.Bits[i] & mask.Bits[i];
    return bits;
}

BACSTAC_BIT_STRING AllBits() {
    BACSTAC_BIT_STRING bits{};
    std::fill(std::begin(bits.Bits), std::end(bits.Bits), std::uint8_t{0xFF});
    return bits;
}

bool IsAnyBitSet(const BACSTAC_BIT_STRING& bits) {
    return std::any_of(std::begin(bits.Bits), std::end(bits.Bits), [](std::uint8_t octet) { return octet != 0; });
}

// What a state or a number comes to, whatever type it has.
std::int64_t StateOf(const Value& value) {
    bool on = false;
    if (Reader in(value.Wire()); PrimitiveTagOf(value.Wire()) == bacnet::TAG_BOOLEAN && in.Boolean(on))
        return on ? 1 : 0;
    return static_cast<std::int64_t>(NumberOf(value));
}

bool IsSameState(const EventTerms&, const Value& a, const Value& b) {
    return StateOf(a) == StateOf(b);
}

bool IsSameUnderMask(const EventTerms& terms, const Value& a, const Value& b) {
    return std::ranges::equal(Masked(BitsOf(a), terms.Mask).Bits, Masked(BitsOf(b), terms.Mask).Bits);
}

bool IsSameText(const EventTerms&, const Value& a, const Value& b) {
    return a == b;
}

using Same = bool (*)(const EventTerms&, const Value&, const Value&);

template <Same same>
std::uint32_t JudgeAlarms(const EventTerms& terms, const EventInputs& inputs, std::uint32_t) {
    const bool alarm = std::any_of(terms.Alarms.begin(), terms.Alarms.end(),
                                   [&](const Value& value) { return same(terms, inputs.Monitored, value); });
    return alarm ? EVENT_OFFNORMAL : EVENT_NORMAL;
}

// From one alarm to the next.
template <Same same>
bool AnotherAlarm(const EventTerms& terms, const EventInputs& inputs, std::uint32_t present) {
    return present == EVENT_OFFNORMAL && !same(terms, inputs.Monitored, inputs.Last);
}

bool ReadAlarmProperties(const Object& object, EventTerms& terms) {
    const Value* one = object.Find(PROP_ALARM_VALUE);
    const Value* many = object.Find(PROP_ALARM_VALUES);
    if (one != nullptr)
        terms.Alarms.push_back(*one);
    for (std::uint32_t i = 0; many != nullptr && i < many->Count(); ++i)
        terms.Alarms.push_back(Value::Encoded(many->Element(i)));
    return one != nullptr || many != nullptr;
}

// ---- change-of-bitstring

bool ReadBitStringParameters(Reader& in, EventTerms& terms) {
    Octets list;
    if (!in.Unsigned(terms.TimeDelay, TIME_DELAY) || !in.BitString(terms.Mask, 1) || !in.Enclosed(2, list))
        return false;
    for (const Octets element : SplitElements(list, TYPE_BIT_STRING).value_or(WireElements{}))
        terms.Alarms.push_back(Value::Encoded(element));
    return true;
}

bool ReadBitStringObject(const Object& object, EventTerms& terms) {
    const Value* mask = object.Find(PROP_BIT_MASK);
    terms.Mask = mask == nullptr ? AllBits() : BitsOf(*mask);
    return ReadAlarmProperties(object, terms);
}

void PutBitString(const EventTerms&, const EventInputs& inputs, std::uint32_t, Writer& to) {
    to.BitString(BitsOf(inputs.Monitored), 0);
    to.BitString(inputs.StatusFlags, 1);
}

// ---- change-of-state

constexpr unsigned BOOLEAN_STATE = 0; // choices of BACnetPropertyStates
constexpr unsigned BINARY_STATE = 1;
constexpr unsigned UNSIGNED_STATE = 11;
constexpr unsigned INTEGER_STATE = 41;

bool ReadStateParameters(Reader& in, EventTerms& terms) {
    Octets list;
    if (!in.Unsigned(terms.TimeDelay, TIME_DELAY) || !in.Enclosed(1, list))
        return false;
    Reader states(list);
    bacnet::Tag tag;
    while (states.PeekTag(tag) && tag.Kind == bacnet::TagKind::context) {
        terms.StateChoice = tag.Number;
        bool on = false;
        std::int32_t whole = 0;
        std::uint32_t natural = 0;
        if (tag.Number == BOOLEAN_STATE && states.Boolean(on, BOOLEAN_STATE))
            terms.Alarms.push_back(Value::Boolean(on));
        else if (tag.Number == INTEGER_STATE && states.Signed(whole, INTEGER_STATE))
            terms.Alarms.push_back(Value::Signed(whole));
        else if (states.Unsigned(natural, tag.Number))
            terms.Alarms.push_back(Value::Unsigned(natural));
    }
    return states.AtEnd();
}

bool ReadStateObject(const Object& object, EventTerms& terms) {
    const Value* present = object.Find(PROP_PRESENT_VALUE);
    const bool isNumber = present != nullptr && PrimitiveTagOf(present->Wire()) == bacnet::TAG_UNSIGNED;
    terms.StateChoice = isNumber ? UNSIGNED_STATE : BINARY_STATE;
    return ReadAlarmProperties(object, terms);
}

void PutState(const EventTerms& terms, const EventInputs& inputs, std::uint32_t, Writer& to) {
    const std::int64_t state = StateOf(inputs.Monitored);
    to.Opening(0);
    if (terms.StateChoice == BOOLEAN_STATE)
        to.Boolean(state != 0, BOOLEAN_STATE);
    else if (terms.StateChoice == INTEGER_STATE)
        to.Signed(state, INTEGER_STATE);
    else
        to.Unsigned(static_cast<std::uint64_t>(state), static_cast<int>(terms.StateChoice));
    to.Closing(0);
    to.BitString(inputs.StatusFlags, 1);
}

// ---- change-of-value: always normal, and reported again

constexpr unsigned CHANGED_BITS = 0;
constexpr int CHANGED_VALUE = 1;

bool ReadValueParameters(Reader& in, EventTerms& terms) {
    return in.Unsigned(terms.TimeDelay, TIME_DELAY) && in.Open(1) &&
           (in.IsContext(CHANGED_BITS) ? in.BitString(terms.Mask, CHANGED_BITS)
                                       : ReadNumber(in, Form::real, CHANGED_VALUE, terms.Increment)) &&
           in.Close(1);
}

std::uint32_t JudgeAlwaysNormal(const EventTerms&, const EventInputs&, std::uint32_t) {
    return EVENT_NORMAL;
}

bool HasMoved(const EventTerms& terms, const EventInputs& inputs, std::uint32_t) {
    if (terms.Mask.BitCount != 0)
        return !IsSameUnderMask(terms, inputs.Monitored, inputs.Last);
    return std::abs(NumberOf(inputs.Monitored) - NumberOf(inputs.Last)) >= terms.Increment &&
           inputs.Monitored != inputs.Last;
}

void PutChangedValue(const EventTerms& terms, const EventInputs& inputs, std::uint32_t, Writer& to) {
    to.Opening(0);
    if (terms.Mask.BitCount != 0)
        to.BitString(BitsOf(inputs.Monitored), CHANGED_BITS);
    else
        to.Real(static_cast<float>(NumberOf(inputs.Monitored)), CHANGED_VALUE);
    to.Closing(0);
    to.BitString(inputs.StatusFlags, 1);
}

// ---- command-failure

bool ReadCommandParameters(Reader& in, EventTerms& terms) {
    return in.Unsigned(terms.TimeDelay, TIME_DELAY) && in.Open(1) && (terms.Other = ReadReference(in)).has_value() &&
           in.Close(1);
}

bool ReadCommandObject(const Object& object, EventTerms& terms) {
    terms.Other = BACSTAC_DEV_OBJ_PROP_REF{object.Id(), PROP_FEEDBACK_VALUE, WHOLE, 0, {}};
    return object.Find(PROP_FEEDBACK_VALUE) != nullptr;
}

std::uint32_t JudgeCommand(const EventTerms&, const EventInputs& inputs, std::uint32_t) {
    return inputs.Monitored == inputs.Other ? EVENT_NORMAL : EVENT_OFFNORMAL;
}

void PutCommand(const EventTerms&, const EventInputs& inputs, std::uint32_t, Writer& to) {
    to.Opening(0);
    to.Octets(inputs.Monitored.Wire());
    to.Closing(0);
    to.BitString(inputs.StatusFlags, 1);
    to.Opening(2);
    to.Octets(inputs.Other.Wire());
    to.Closing(2);
}

// ---- limits

std::uint32_t JudgeLimits(const EventTerms& terms, double value, double low, double high, std::uint32_t present) {
    const bool isHigh = terms.HighEnabled && value > high;
    const bool isLow = terms.LowEnabled && value < low;
    if (isHigh || isLow)
        return isHigh ? EVENT_HIGH_LIMIT : EVENT_LOW_LIMIT;
    const bool staysHigh = present == EVENT_HIGH_LIMIT && terms.HighEnabled && value >= high - terms.Deadband;
    const bool staysLow = present == EVENT_LOW_LIMIT && terms.LowEnabled && value <= low + terms.Deadband;
    return staysHigh || staysLow ? present : EVENT_NORMAL;
}

std::uint32_t JudgeRange(const EventTerms& terms, const EventInputs& inputs, std::uint32_t present) {
    return JudgeLimits(terms, NumberOf(inputs.Monitored), terms.Low, terms.High, present);
}

// Without a deadband a value at the limit is within it.
std::uint32_t JudgeBareRange(const EventTerms& terms, const EventInputs& inputs, std::uint32_t) {
    return JudgeRange(terms, inputs, EVENT_NORMAL);
}

double LimitOf(const EventTerms& terms, std::uint32_t exceeded) {
    return exceeded == EVENT_LOW_LIMIT ? terms.Low : terms.High;
}

struct RangeForm {
    Form Limits;
    Form Deadband;
    bool HasDeadband;
};

constexpr RangeForm REAL_RANGE{Form::real, Form::real, true};
constexpr RangeForm DOUBLE_RANGE{Form::wide, Form::wide, true};
constexpr RangeForm SIGNED_RANGE{Form::whole, Form::natural, true};
constexpr RangeForm UNSIGNED_RANGE{Form::natural, Form::natural, true};
constexpr RangeForm BARE_RANGE{Form::natural, Form::natural, false};

template <const RangeForm& form>
bool ReadRangeParameters(Reader& in, EventTerms& terms) {
    return in.Unsigned(terms.TimeDelay, TIME_DELAY) && ReadNumber(in, form.Limits, 1, terms.Low) &&
           ReadNumber(in, form.Limits, 2, terms.High) &&
           (!form.HasDeadband || ReadNumber(in, form.Deadband, 3, terms.Deadband));
}

// Limit_Enable is low limit and high limit.
void ReadLimitProperties(const Object& object, EventTerms& terms) {
    ReadNumberOf(object, PROP_DEADBAND, terms.Deadband);
    if (const Value* enable = object.Find(PROP_LIMIT_ENABLE)) {
        const std::uint8_t bits = BitsOf(*enable).Bits[0];
        terms.LowEnabled = (bits & 1U) != 0;
        terms.HighEnabled = (bits & 2U) != 0;
    }
}

bool ReadRangeObject(const Object& object, EventTerms& terms) {
    const bool low = ReadNumberOf(object, PROP_LOW_LIMIT, terms.Low);
    const bool high = ReadNumberOf(object, PROP_HIGH_LIMIT, terms.High);
    ReadLimitProperties(object, terms);
    terms.LowEnabled = terms.LowEnabled && low;
    terms.HighEnabled = terms.HighEnabled && high;
    return low || high;
}

template <const RangeForm& form>
void PutRange(const EventTerms& terms, const EventInputs& inputs, std::uint32_t exceeded, Writer& to) {
    int tag = 0;
    PutNumber(to, form.Limits, NumberOf(inputs.Monitored), tag++);
    to.BitString(inputs.StatusFlags, tag++);
    if (form.HasDeadband)
        PutNumber(to, form.Deadband, terms.Deadband, tag++);
    PutNumber(to, form.Limits, LimitOf(terms, exceeded), tag);
}

// ---- floating-limit: low and high are differences from a set point

bool ReadFloatingParameters(Reader& in, EventTerms& terms) {
    return in.Unsigned(terms.TimeDelay, TIME_DELAY) && in.Open(1) && (terms.Other = ReadReference(in)).has_value() &&
           in.Close(1) && ReadNumber(in, Form::real, 2, terms.Low) && ReadNumber(in, Form::real, 3, terms.High) &&
           ReadNumber(in, Form::real, 4, terms.Deadband);
}

bool ReadFloatingObject(const Object& object, EventTerms& terms) {
    ReadLimitProperties(object, terms);
    terms.Other = BACSTAC_DEV_OBJ_PROP_REF{object.Id(), PROP_SETPOINT, WHOLE, 0, {}};
    const bool known = ReadNumberOf(object, PROP_ERROR_LIMIT, terms.High);
    terms.Low = terms.High;
    return known;
}

std::uint32_t JudgeFloating(const EventTerms& terms, const EventInputs& inputs, std::uint32_t present) {
    const double setPoint = NumberOf(inputs.Other);
    return JudgeLimits(terms, NumberOf(inputs.Monitored), setPoint - terms.Low, setPoint + terms.High, present);
}

void PutFloating(const EventTerms& terms, const EventInputs& inputs, std::uint32_t exceeded, Writer& to) {
    PutNumber(to, Form::real, NumberOf(inputs.Monitored), 0);
    to.BitString(inputs.StatusFlags, 1);
    PutNumber(to, Form::real, NumberOf(inputs.Other), 2);
    PutNumber(to, Form::real, LimitOf(terms, exceeded), 3);
}

// ---- buffer-ready: the monitored value is the number of records ever logged

bool ReadBufferParameters(Reader& in, EventTerms& terms) {
    return ReadNumber(in, Form::natural, 0, terms.Increment);
}

bool ReadBufferObject(const Object& object, EventTerms& terms) {
    return ReadNumberOf(object, PROP_NOTIFICATION_THRESHOLD, terms.Increment);
}

bool IsBufferReady(const EventTerms& terms, const EventInputs& inputs, std::uint32_t) {
    return terms.Increment > 0 && NumberOf(inputs.Monitored) - NumberOf(inputs.Last) >= terms.Increment;
}

void PutBuffer(const EventTerms&, const EventInputs& inputs, std::uint32_t, Writer& to) {
    to.Opening(0);
    to.Octets(inputs.Reference.Wire());
    to.Closing(0);
    PutNumber(to, Form::natural, NumberOf(inputs.Last), 1);
    PutNumber(to, Form::natural, NumberOf(inputs.Monitored), 2);
}

// ---- change-of-characterstring

bool ReadTextParameters(Reader& in, EventTerms& terms) {
    Octets list;
    if (!in.Unsigned(terms.TimeDelay, TIME_DELAY) || !in.Enclosed(1, list))
        return false;
    for (const Octets element : SplitElements(list, TYPE_STRING).value_or(WireElements{}))
        terms.Alarms.push_back(Value::Encoded(element));
    return true;
}

// The octets of a character string without its tag, and with a context tag in its place.
void PutText(const Value& text, int tag, Writer& to) {
    Octets octets;
    if (!Reader(text.Wire()).CharacterString(octets))
        return to.CharacterString("", tag);
    to.Tag(static_cast<unsigned>(tag), true, static_cast<std::uint32_t>(octets.size()));
    to.Octets(octets);
}

// The alarm value is the one that was met, or was met last.
void PutTexts(const EventTerms& terms, const EventInputs& inputs, std::uint32_t, Writer& to) {
    const bool alarm = JudgeAlarms<IsSameText>(terms, inputs, EVENT_NORMAL) != EVENT_NORMAL;
    PutText(inputs.Monitored, 0, to);
    to.BitString(inputs.StatusFlags, 1);
    PutText(alarm ? inputs.Monitored : inputs.Last, 2, to);
}

// ---- change-of-status-flags: any selected flag

bool ReadFlagsParameters(Reader& in, EventTerms& terms) {
    return in.Unsigned(terms.TimeDelay, TIME_DELAY) && in.BitString(terms.Mask, 1);
}

std::uint32_t JudgeFlags(const EventTerms& terms, const EventInputs& inputs, std::uint32_t) {
    return IsAnyBitSet(Masked(BitsOf(inputs.Monitored), terms.Mask)) ? EVENT_OFFNORMAL : EVENT_NORMAL;
}

void PutFlags(const EventTerms&, const EventInputs& inputs, std::uint32_t, Writer& to) {
    to.BitString(BitsOf(inputs.Monitored), 1);
}

// ---- none

bool NotByItself(const Object&, EventTerms&) {
    return false;
}

constexpr EventAlgorithm ALGORITHMS[] = {
    {0, ReadBitStringParameters, ReadBitStringObject, JudgeAlarms<IsSameUnderMask>, AnotherAlarm<IsSameUnderMask>,
     PutBitString},
    {1, ReadStateParameters, ReadStateObject, JudgeAlarms<IsSameState>, AnotherAlarm<IsSameState>, PutState},
    {2, ReadValueParameters, NotByItself, JudgeAlwaysNormal, HasMoved, PutChangedValue},
    {3, ReadCommandParameters, ReadCommandObject, JudgeCommand, nullptr, PutCommand},
    {4, ReadFloatingParameters, ReadFloatingObject, JudgeFloating, nullptr, PutFloating},
    {5, ReadRangeParameters<REAL_RANGE>, ReadRangeObject, JudgeRange, nullptr, PutRange<REAL_RANGE>},
    {10, ReadBufferParameters, ReadBufferObject, JudgeAlwaysNormal, IsBufferReady, PutBuffer},
    {11, ReadRangeParameters<BARE_RANGE>, ReadRangeObject, JudgeBareRange, nullptr, PutRange<BARE_RANGE>},
    {14, ReadRangeParameters<DOUBLE_RANGE>, ReadRangeObject, JudgeRange, nullptr, PutRange<DOUBLE_RANGE>},
    {15, ReadRangeParameters<SIGNED_RANGE>, ReadRangeObject, JudgeRange, nullptr, PutRange<SIGNED_RANGE>},
    {16, ReadRangeParameters<UNSIGNED_RANGE>, ReadRangeObject, JudgeRange, nullptr, PutRange<UNSIGNED_RANGE>},
    {17, ReadTextParameters, ReadAlarmProperties, JudgeAlarms<IsSameText>, AnotherAlarm<IsSameText>, PutTexts},
    {18, ReadFlagsParameters, NotByItself, JudgeFlags, AnotherAlarm<IsSameUnderMask>, PutFlags},
};

} // namespace

const EventAlgorithm* FindAlgorithm(std::uint32_t eventType) {
    const auto* const at = std::find_if(std::begin(ALGORITHMS), std::end(ALGORITHMS),
                                        [=](const EventAlgorithm& row) { return row.Type == eventType; });
    return at == std::end(ALGORITHMS) ? nullptr : at;
}

void PutReliability(const EventInputs& inputs, Writer& to) {
    to.Enumerated(inputs.Reliability, 0);
    to.BitString(inputs.StatusFlags, 1);
    to.Opening(2); // no further values
    to.Closing(2);
}

} // namespace sim
