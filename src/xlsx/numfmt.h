#pragma once
// Excel-compatible number format codes: parsing (with the application's refusals) and rendering
// of numbers, texts and Booleans as the application displays them in a cell of standard width.
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace xlsx {

// A format code the application refuses.
class NumberFormatError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class NumberFormat {
public:
    // Throws NumberFormatError for a code the application refuses.
    explicit NumberFormat(std::string_view code);
    ~NumberFormat();
    NumberFormat(NumberFormat&&) noexcept;
    NumberFormat& operator=(NumberFormat&&) noexcept;

    const std::string& Code() const;
    // Displayed text of a number (dates are serials of the 1900 system).
    std::string Format(double value) const;
    // Displayed text of a text cell (the text section, or the text as it is).
    std::string FormatText(std::string_view text) const;
    // Displayed text of a logical cell ("TRUE"/"FALSE" unless a text section says otherwise).
    std::string FormatBool(bool value) const;
    // True when the code shows dates or times.
    bool IsDate() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// True when the application accepts the code.
bool IsValidNumberFormat(std::string_view code);
// Shortcut with a small cache of parsed codes; throws NumberFormatError.
std::string FormatNumber(std::string_view code, double value);
// The codes of the built-in number formats by id (0 General ... 49 @) as the en-US application
// shows them; "" for an id with no built-in code.
std::string_view BuiltinNumberFormat(int id);

}  // namespace xlsx
