#include "appcore/ApplicationFilter.h"

#include <array>
#include <string>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

namespace sweeply {

namespace {

// "/Volume" without an "s" is meant: it also takes older mount points.
constexpr std::string_view kBeforeLibrary =
    R"(^(/net)|^(/tmp)|^(/var)|^(/cores)|^(/private)|^(/opt)|^(/dev)|^(/sbin)|^(/bin)|^(/etc)|^(/usr)|^()";
constexpr std::string_view kAfterLibrary = R"()|^(/Library)|^(/Developer)|^(/System/Library)|^(/Volume)|)"
                                           R"(.+(/build/).+|.+(\.app/).+|.+(\.pvm).*|.+(\.vmwarevm).*)";

/// The text as a pattern that matches exactly it: a home folder may be called "j.doe".
std::string literal(std::string_view text) {
    std::string pattern;
    for (const char letter : text) {
        if (std::string_view(R"(\^$.|?*+()[]{})").find(letter) != std::string_view::npos)
            pattern += '\\';
        pattern += letter;
    }
    return pattern;
}

PCRE2_SPTR units(std::string_view text) { return reinterpret_cast<PCRE2_SPTR>(text.data()); }

} // namespace

void ApplicationFilter::Free::operator()(pcre2_real_code_8* code) const { pcre2_code_free(code); }

Result<ApplicationFilter> ApplicationFilter::compile(std::string_view homeLibrary) {
    const std::string pattern = std::string(kBeforeLibrary) + literal(homeLibrary) + std::string(kAfterLibrary);
    int errorCode = 0;
    PCRE2_SIZE errorOffset = 0;
    Code code(pcre2_compile(units(pattern), pattern.size(), 0, &errorCode, &errorOffset, nullptr));
    if (!code) {
        std::array<PCRE2_UCHAR, 256> reason{};
        pcre2_get_error_message(errorCode, reason.data(), reason.size());
        return Failure(Error{ErrorKind::Damaged, {}, reinterpret_cast<const char*>(reason.data())});
    }
    return ApplicationFilter(std::move(code));
}

bool ApplicationFilter::matches(std::string_view path) const {
    struct FreeMatch {
        void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
    };
    const std::unique_ptr<pcre2_match_data, FreeMatch> data(pcre2_match_data_create(1, nullptr));
    const int result = pcre2_match(m_code.get(), units(path), path.size(), 0, 0, data.get(), nullptr);
    // A path too tangled to be judged within the library's limits is no application of this user's either.
    return result != PCRE2_ERROR_NOMATCH;
}

} // namespace sweeply
