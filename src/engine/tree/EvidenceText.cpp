#include "engine/tree/EvidenceText.h"

#include "platform/Localization.h"

namespace sweeply {

namespace {

std::string sentenceForIdentifier(const Evidence& evidence) {
    switch (evidence.strength) {
    case EvidenceStrength::Certain:
        return localizedFormat("It is named after the identifier \"%@\".", {evidence.term});
    case EvidenceStrength::Likely:
        return localizedFormat("Its name begins with the identifier \"%@\".", {evidence.term});
    case EvidenceStrength::Weak:
        break;
    }
    return localizedFormat("Its name has the identifier \"%@\" somewhere in it.", {evidence.term});
}

std::string sentenceForName(const Evidence& evidence) {
    if (evidence.strength == EvidenceStrength::Weak)
        return localizedFormat("Its name has \"%@\" somewhere in it.", {evidence.term});
    return localizedFormat("It is called \"%@\" like the application.", {evidence.term});
}

std::string claimantsOf(const Evidence& evidence) {
    std::string claimants;
    for (const auto& path : evidence.alsoClaimedBy)
        claimants += (claimants.empty() ? "" : ", ") + path;
    return claimants;
}

} // namespace

std::string sentenceFor(const Evidence& evidence) {
    switch (evidence.rule) {
    case EvidenceRule::Bundle:
        return localizedString("This is the application itself.");
    case EvidenceRule::Receipt:
        return localizedFormat("The installer's receipt \"%@\" lists it.", {evidence.term});
    case EvidenceRule::Identifier:
        return sentenceForIdentifier(evidence);
    case EvidenceRule::Name:
    case EvidenceRule::Ticket:
        return sentenceForName(evidence);
    case EvidenceRule::BroughtPlugin:
        return localizedString("The application brings a plug-in of this name.");
    case EvidenceRule::LoginItem:
        return localizedString("It starts the application at login.");
    case EvidenceRule::LaunchItem:
        return localizedFormat("It starts a program of the application, \"%@\".", {evidence.term});
    case EvidenceRule::NestedApplication:
        return localizedFormat("Its name matches \"%@\", an application inside.", {evidence.term});
    case EvidenceRule::Package:
        return localizedString("This is the package itself.");
    case EvidenceRule::CacheFolder:
        return localizedString("It lies in a folder for caches, which are made again when they are needed.");
    case EvidenceRule::PhotoCache:
        return localizedString("It holds photos scaled for a music player, which are made again when they are needed.");
    case EvidenceRule::LogSize:
        return localizedString("It is a log of 10 KB or more.");
    case EvidenceRule::LanguageNotKept:
        return localizedFormat("\"%@\" is none of the languages that you keep.", {evidence.term});
    case EvidenceRule::ForeignCode:
        return localizedString("It has code for processors that this Mac does not have.");
    case EvidenceRule::DeveloperFile:
        return localizedString("Only the makers of programs need such files.");
    case EvidenceRule::Trash:
        return localizedString("It lies in a Trash.");
    case EvidenceRule::FinderFile:
        return localizedString("It only remembers how a folder was shown.");
    case EvidenceRule::OrphanedWidget:
        return localizedFormat("No installed widget has the identifier \"%@\".", {evidence.term});
    case EvidenceRule::DeadLoginItem:
    case EvidenceRule::DeadLaunchItem:
        if (evidence.term.empty())
            return localizedString("It names no program that it would start.");
        return localizedFormat("What it starts is gone: \"%@\".", {evidence.term});
    case EvidenceRule::OrphanedPreference:
        return localizedString("No installed application has this name, and it has not changed for three weeks.");
    case EvidenceRule::Extension:
        return localizedString("It is an installed extension.");
    case EvidenceRule::Named:
        break;
    }
    return localizedString("You named it.");
}

std::string wordFor(EvidenceStrength strength) {
    switch (strength) {
    case EvidenceStrength::Certain:
        return localizedString("Certain");
    case EvidenceStrength::Likely:
        return localizedString("Likely");
    case EvidenceStrength::Weak:
        break;
    }
    return localizedString("Weak");
}

std::string claimsBeside(const Evidence& evidence) {
    return evidence.isClaimed() ? localizedFormat("It may also belong to %@.", {claimantsOf(evidence)}) : std::string();
}

std::string reasonAgainstChecking(const Evidence& evidence) {
    if (evidence.isClaimed())
        return localizedFormat("Not checked: it may belong to %@.", {claimantsOf(evidence)});
    if (evidence.strength == EvidenceStrength::Weak)
        return localizedString("Not checked: only a part of its name matches.");
    return {};
}

} // namespace sweeply
