#include "numerics/Numberlocale.h"

#include <cstdlib>
#include <string_view>

namespace nerivane {
namespace {

struct NumberFormatState {
    NumberFormatSettings settings;
    bool built = false;
};

NumberFormatState& FormatState() {
    static NumberFormatState state;
    return state;
}

std::string Lower(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return result;
}

struct CommaLocale {
    const char* language;
    char thousandsSeparator;
};

// Languages whose usual number format has a decimal comma.
// clang-format off
constexpr CommaLocale CommaLanguages[] = {
    {"de", '.'}, {"it", '.'}, {"es", '.'}, {"nl", '.'}, {"pt", '.'}, {"da", '.'}, {"id", '.'},
    {"tr", '.'}, {"el", '.'}, {"ro", '.'}, {"hr", '.'}, {"sl", '.'}, {"sr", '.'}, {"bs", '.'},
    {"is", '.'}, {"ca", '.'}, {"gl", '.'}, {"eu", '.'}, {"vi", '.'}, {"az", '.'}, {"mk", '.'},
    {"af", ' '}, {"fr", ' '}, {"ru", ' '}, {"uk", ' '}, {"be", ' '}, {"bg", ' '}, {"pl", ' '},
    {"cs", ' '}, {"sk", ' '}, {"hu", ' '}, {"sv", ' '}, {"nb", ' '}, {"nn", ' '}, {"no", ' '},
    {"fi", ' '}, {"et", ' '}, {"lv", ' '}, {"lt", ' '}, {"kk", ' '}, {"ka", ' '}, {"hy", ' '},
};

// Territories whose format differs from their language's.
struct TerritoryException {
    const char* locale;
    NumberFormatSettings settings;
};
constexpr TerritoryException TerritoryExceptions[] = {
    {"de_ch", {'.', '\''}}, {"de_li", {'.', '\''}}, {"it_ch", {'.', '\''}},
    {"es_mx", {'.', ','}},  {"es_us", {'.', ','}},  {"es_pr", {'.', ','}},
    {"es_do", {'.', ','}},  {"es_gt", {'.', ','}},  {"es_hn", {'.', ','}},
    {"es_ni", {'.', ','}},  {"es_pa", {'.', ','}},  {"es_sv", {'.', ','}},
    {"en_za", {',', ' '}},  {"en_dk", {',', '.'}},
};
// clang-format on

std::string LocaleNameFromEnvironment() {
    for (const char* variable : {"LC_ALL", "LC_NUMERIC", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') return value;
    }
    return "";
}

}  // namespace

char DecimalSeparator() {
    return CurrentNumberFormat().decimalSeparator;
}

NumberFormatSettings NumberFormatForLocaleName(const std::string& localeName) {
    // "ll_TT.codeset@modifier"; only the language and the territory decide the format.
    const std::string name = Lower(localeName.substr(0, localeName.find_first_of(".@")));
    const std::size_t territoryStart = name.find_first_of("_-");
    const std::string language = name.substr(0, territoryStart);
    const std::string locale = territoryStart == std::string::npos
                                   ? language
                                   : language + "_" + name.substr(territoryStart + 1);
    for (const TerritoryException& exception : TerritoryExceptions)
        if (locale == exception.locale) return exception.settings;
    for (const CommaLocale& comma : CommaLanguages)
        if (language == comma.language) return {',', comma.thousandsSeparator};
    return {'.', ','};
}

const NumberFormatSettings& CurrentNumberFormat() {
    NumberFormatState& state = FormatState();
    if (!state.built) {
        state.settings = NumberFormatForLocaleName(LocaleNameFromEnvironment());
        state.built = true;
    }
    return state.settings;
}

void SetNumberFormat(const NumberFormatSettings& settings) {
    FormatState().settings = settings;
    FormatState().built = true;
}

void ResetNumberFormat() {
    FormatState().built = false;
}

}  // namespace nerivane
