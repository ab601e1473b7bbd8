#pragma once

#include <clocale>
#include <locale>

namespace test {

/// A decimal comma for the C and the C++ library, undone at the end.
class CommaLocale {
  public:
    CommaLocale() : old_(std::locale::global(std::locale(std::locale::classic(), new Comma))) {
        std::setlocale(LC_ALL, "de_DE.UTF-8");
    }
    ~CommaLocale() {
        std::locale::global(old_);
        std::setlocale(LC_ALL, "C");
    }

  private:
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::locale old_;
};

}  // namespace test
