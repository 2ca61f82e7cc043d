#include "script/library/format.h"

#include "script/numbers.h"
#include "text/printf_format.h"

namespace kelmora {
namespace {

class ScriptFormatArguments : public FormatArguments {
public:
    explicit ScriptFormatArguments(Arguments values) : values_(values) {}

    bool next() override { return ++at_ < values_.size(); }
    std::int64_t integer() override { return toInt(values_[at_]); }
    std::uint64_t bits() override { return static_cast<std::uint32_t>(toInt(values_[at_])); }
    double number() override { return toDouble(values_[at_]); }
    std::string text() override { return values_[at_].toString(); }

private:
    Arguments values_;
    std::size_t at_ = 0;
};

std::string faultText(const FormatFailure& failure) {
    switch (failure.fault) {
        case FormatFault::Incomplete:
            return "incomplete format specifier";
        case FormatFault::Unsupported:
            return std::string("unsupported specifier %") + failure.conversion;
        case FormatFault::MissingArgument:
            return std::string("missing argument for format specifier %") + failure.conversion;
        case FormatFault::TooLarge:
            return "the result is too large";
        case FormatFault::Unprintable:
            break;
    }
    return "failed to format value";
}

}  // namespace

std::string formatValues(Arguments arguments) {
    ScriptFormatArguments values(arguments);
    try {
        return formatText(arguments[0].text(), values);
    } catch (const FormatFailure& failure) {
        throw std::runtime_error("string['format']: " + faultText(failure));
    }
}

}  // namespace kelmora
