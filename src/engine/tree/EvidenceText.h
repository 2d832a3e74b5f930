#pragma once

#include "engine/tree/Evidence.h"

#include <string>

namespace sweeply {

/// Evidence as a sentence for people, in their language: why an item is listed. Terms stand in it as they are: make
/// them harmless where it is shown.
[[nodiscard]] std::string sentenceFor(const Evidence& evidence);

/// How sure that is, as a word for people.
[[nodiscard]] std::string wordFor(EvidenceStrength strength);

/// Who else claims such an item, for one that is checked all the same; empty where nobody does.
[[nodiscard]] std::string claimsBeside(const Evidence& evidence);

/// Why such an item is unchecked before the person said anything: who claims it, or that the match is weak. Empty where
/// neither is so.
[[nodiscard]] std::string reasonAgainstChecking(const Evidence& evidence);

} // namespace sweeply
