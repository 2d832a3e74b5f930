#include "platform/OldLanguageNames.h"

#include <algorithm>
#include <array>
#include <utility>

namespace sweeply {

namespace {

using Name = std::pair<std::string_view, std::string_view>;

// Sorted.
// clang-format off
constexpr auto kNames = std::to_array<Name>({
    {"Afrikaans", "af"}, {"Albanian", "sq"}, {"Amharic", "am"}, {"Arabic", "ar"}, {"Armenian", "hy"},
    {"Assamese", "as"}, {"Aymara", "ay"}, {"Azerbaijani", "az"}, {"Basque", "eu"}, {"Belarusian", "be"},
    {"Belorussian", "be"}, {"Bengali", "bn"}, {"Brazilian Portugese", "pt-BR"}, {"Brazilian Portuguese", "pt-BR"},
    {"Breton", "br"}, {"Bulgarian", "bg"}, {"Burmese", "my"}, {"Byelorussian", "be"}, {"Catalan", "ca"},
    {"Chewa", "ny"}, {"Chichewa", "ny"}, {"Chinese", "zh"}, {"Chinese, Simplified", "zh-Hans"},
    {"Chinese, Traditional", "zh-Hant"}, {"Chinese, Tradtional", "zh-Hant"}, {"Croatian", "hr"}, {"Czech", "cs"},
    {"Danish", "da"}, {"Dutch", "nl"}, {"Dzongkha", "dz"}, {"English", "en"}, {"Esperanto", "eo"}, {"Estonian", "et"},
    {"Faroese", "fo"}, {"Farsi", "fa"}, {"Finnish", "fi"}, {"Flemish", "nl-BE"}, {"French", "fr"}, {"Galician", "gl"},
    {"Gallegan", "gl"}, {"Georgian", "ka"}, {"German", "de"}, {"Greek", "el"}, {"Greenlandic", "kl"},
    {"Guarani", "gn"}, {"Gujarati", "gu"}, {"Hawaiian", "haw"}, {"Hebrew", "he"}, {"Hindi", "hi"},
    {"Hungarian", "hu"}, {"Icelandic", "is"}, {"Indonesian", "id"}, {"Inuktitut", "iu"}, {"Irish", "ga"},
    {"Italian", "it"}, {"Japanese", "ja"}, {"Javanese", "jv"}, {"Kalaallisut", "kl"}, {"Kannada", "kn"},
    {"Kashmiri", "ks"}, {"Kazakh", "kk"}, {"Khmer", "km"}, {"Kinyarwanda", "rw"}, {"Kirghiz", "ky"}, {"Korean", "ko"},
    {"Kurdish", "ku"}, {"Lao", "lo"}, {"Latin", "la"}, {"Latvian", "lv"}, {"Lithuanian", "lt"}, {"Macedonian", "mk"},
    {"Malagasy", "mg"}, {"Malay", "ms"}, {"Malayalam", "ml"}, {"Maltese", "mt"}, {"Manx", "gv"}, {"Marathi", "mr"},
    {"Moldavian", "mo"}, {"Mongolian", "mn"}, {"Nepali", "ne"}, {"Norwegian", "nb"}, {"Nyanja", "ny"},
    {"Nynorsk", "nn"}, {"Oriya", "or"}, {"Oromo", "om"}, {"Panjabi", "pa"}, {"Pashto", "ps"}, {"Persian", "fa"},
    {"Polish", "pl"}, {"Portuguese", "pt"}, {"Portuguese, Brazilian", "pt-BR"}, {"Punjabi", "pa"}, {"Pushto", "ps"},
    {"Quechua", "qu"}, {"Romanian", "ro"}, {"Ruanda", "rw"}, {"Rundi", "rn"}, {"Russian", "ru"}, {"Sami", "se"},
    {"Sanskrit", "sa"}, {"Scottish", "gd"}, {"Serbian", "sr"}, {"Simplified Chinese", "zh-Hans"}, {"Sindhi", "sd"},
    {"Sinhalese", "si"}, {"Slovak", "sk"}, {"Slovenian", "sl"}, {"Somali", "so"}, {"Spanish", "es"},
    {"Sundanese", "su"}, {"Swahili", "sw"}, {"Swedish", "sv"}, {"Tagalog", "tl"}, {"Tajik", "tg"}, {"Tajiki", "tg"},
    {"Tamil", "ta"}, {"Tatar", "tt"}, {"Telugu", "te"}, {"Thai", "th"}, {"Tibetan", "bo"}, {"Tigrinya", "ti"},
    {"Tongan", "to"}, {"Traditional Chinese", "zh-Hant"}, {"Turkish", "tr"}, {"Turkmen", "tk"}, {"Uighur", "ug"},
    {"Ukrainian", "uk"}, {"Urdu", "ur"}, {"Uzbek", "uz"}, {"Vietnamese", "vi"}, {"Welsh", "cy"}, {"Yiddish", "yi"},
    {"ar_??", "ar"}, {"az.Ar", "az-Arab"}, {"az.Cy", "az-Cyrl"}, {"az.La", "az-Latn"}, {"be_??", "be-BY"},
    {"bn_??", "bn"}, {"bo_??", "bo"}, {"br_??", "br"}, {"cy_??", "cy"}, {"de-1901", "de"}, {"de-96", "de-1996"},
    {"de_96", "de-1996"}, {"de_??", "de-1996"}, {"el.El-P", "grc"}, {"en-ascii", "en-001"}, {"en_??", "en-001"},
    {"eo_??", "eo"}, {"es_??", "es-419"}, {"es_XL", "es-419"}, {"fr_??", "fr-001"}, {"ga-dots", "ga-Latg"},
    {"ga-dots_IE", "ga-Latg-IE"}, {"ga.Lg", "ga-Latg"}, {"ga.Lg_IE", "ga-Latg-IE"}, {"gd_??", "gd"}, {"gv_??", "gv"},
    {"i-lux", "lb"}, {"jv.La", "jv"}, {"jw.La", "jv"}, {"kk.Cy", "kk"}, {"kl.La", "kl"}, {"kl.La_GL", "kl-GL"},
    {"lp_??", "se"}, {"mk_??", "mk-MK"}, {"mn.Cy", "mn-Cyrl"}, {"mn.Mn", "mn-Mong"}, {"ms.Ar", "ms-Arab"},
    {"ms.La", "ms"}, {"no-NO", "nb-NO"}, {"no-NO_NO", "nb-NO-NO"}, {"pa_??", "pa"}, {"sa.Dv", "sa"},
    {"sl_??", "sl-SI"}, {"sme", "se"}, {"sr_??", "sr-RS"}, {"su.La", "su"}, {"yi.He", "yi"}, {"zh-simp", "zh-Hans"},
    {"zh-trad", "zh-Hant"}, {"zh.Ha-S", "zh-Hans"}, {"zh.Ha-S_CN", "zh-Hans"}, {"zh.Ha-T", "zh-Hant"},
    {"zh.Ha-T_TW", "zh-Hant"},
});
// clang-format on

} // namespace

std::string_view codeForOldLanguageName(std::string_view name) {
    const auto found = std::ranges::lower_bound(kNames, name, {}, &Name::first);
    return found != kNames.end() && found->first == name ? found->second : std::string_view();
}

} // namespace sweeply
