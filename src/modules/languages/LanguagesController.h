#pragma once

#include "appcore/bundles/SharedSurveys.h"
#include "engine/ADScanControllerView.h"
#include "modules/ModuleServices.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace sweeply {

class Alerts;
class LanguageKeepList;
class LocalizationNames;

/// Localizations in applications, of languages that the user does not want: one item for an application, and below it
/// one for each language, which stands for all of that language's folders in it.
class LanguagesController final : public ADScanControllerView {
  public:
    /// What it asks the person with, and what he may be shown in place of a scan; all outlives it.
    struct Person {
        Alerts& alerts;
        /// Shows where the languages to keep are chosen. Main thread.
        std::function<void()> showLanguagePreferences;
    };
    /// What one application has of a language.
    struct Localization {
        std::vector<std::string> folders;
        std::vector<std::string> links; ///< to these folders, from beside them; they go with them
        MeasuredItem item = {};         ///< of the folders together
    };
    /// By the language's code.
    using Localizations = std::map<std::string, Localization, std::less<>>;

    LanguagesController(const ModuleServices& services, ScanCoordinator& coordinator, const LanguageKeepList& keepList,
                        Person person);
    ~LanguagesController() override { stopAndJoin(); }

    [[nodiscard]] std::string_view moduleName() const override { return "languages"; }
    [[nodiscard]] std::string defaultsName() const override { return kModuleKey; }
    [[nodiscard]] bool needToSetUserDefalts() const override { return true; }
    [[nodiscard]] bool shouldRespondToDragEvents() const override { return true; }
    void analyzeFile(const std::string& path) override;
    /// A language's folders.
    [[nodiscard]] std::vector<std::string> pathsBehind(const Node& node) const override;
    /// Of all the folders together, under the first one's path.
    [[nodiscard]] ChangeRequest changeFor(const Node& node) const override;

    static constexpr const char* kModuleKey = "CleanLanguageTranslations";

  protected:
    void scanThread() override;
    ChangeOutcome cleanThisNode(Node& node) override;

  private:
    [[nodiscard]] std::string className() const override { return "LanguagesController"; }
    /// False when the person does not want the scan.
    bool confirmsNativeLanguages();
    [[nodiscard]] bool showLanguageAlert(const std::vector<std::string>& codes);
    struct Language {
        std::string name; ///< for people
        SharedEvidence evidence;
    };
    /// What one scan or drop looks with.
    struct Look {
        std::shared_ptr<LocalizationNames> names;
        SharedSurveys::Part surveys;
    };
    [[nodiscard]] Look startLook();
    [[nodiscard]] const Language& languageOf(const std::string& code);
    [[nodiscard]] Localizations languagesForApplicationAtPath(const std::string& path, Look& look);
    void analyzeApplication(const std::string& path, Look& look);
    [[nodiscard]] bool isListed(const std::string& application) const;
    /// Those of a language that has just gone.
    void removeDanglingLinks(const std::vector<std::string>& links, const ChangeRequest& language);
    /// Nothing for what is no language of a listed application. Under the tree lock.
    [[nodiscard]] const Localization* localizationOf(const Node& language) const;

    ModuleServices m_languages;
    const LanguageKeepList& m_keepList;
    const Person m_person;
    /// What the last scan or drop found, by application. Guarded by the tree lock.
    std::map<std::string, Localizations, std::less<>> m_applications;
    std::unordered_map<std::string, Language> m_languagesByCode; ///< of one scan or drop; its thread's
};

} // namespace sweeply
