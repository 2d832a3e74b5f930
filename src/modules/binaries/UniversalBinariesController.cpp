#include "modules/binaries/UniversalBinariesController.h"

#include "appcore/ADTaskRunner.h"
#include "appcore/FolderConstants.h"
#include "appcore/SWApplicationCore.h"
#include "appcore/sizes/DiskSizes.h"
#include "engine/IgnoreList.h"
#include "formats/MachOReader.h"
#include "modules/binaries/LipoReport.h"
#include "platform/Alerts.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/Pace.h"
#include "platform/SystemLog.h"
#include "platform/SystemVersion.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace sweeply {

namespace {

constexpr const char* kLipo = "/usr/bin/lipo";
constexpr const char* kMarker = ".Clean";
constexpr std::array<std::string_view, 3> kKnownNotExecutables{".DS_Store", "PkgInfo", "CodeResources"};
/// So many executables are asked about at once: starting a process costs more than reading one.
constexpr std::size_t kAtOnce = 128;
/// What a bar shows before the number of applications is known.
constexpr std::uint32_t kWaitingForApplications = 200;
constexpr std::uint32_t kWaitingForFolder = 100;
constexpr mode_t kAnyExecution = 0111;

std::string nameOfDescriptor(const UniqueFd& file) { return "/dev/fd/" + std::to_string(file.get()); }

/// Executables have no extension; localizations have none.
Interest interestIn(std::string_view name, FileType type) {
    const auto extension = pathExtension(name);
    if (type == FileType::Directory)
        return extension == "lproj" ? Interest::Nothing : Interest::Below;
    const bool mayBeExecutable = extension.empty() && type == FileType::Regular &&
                                 std::ranges::find(kKnownNotExecutables, name) == kKnownNotExecutables.end();
    return mayBeExecutable ? Interest::Item : Interest::Nothing;
}

Result<bool> beginsLikeFat(const UniqueFd& file, const std::string& path) {
    std::array<char, macho::kFatHeaderSize> head{};
    const ssize_t length = ::pread(file.get(), head.data(), head.size(), 0);
    if (length < 0)
        return Failure(systemError(errno, path));
    return length == static_cast<ssize_t>(head.size()) && macho::mayBeFat({head.data(), head.size()});
}

} // namespace

UniversalBinariesController::UniversalBinariesController(const ModuleServices& services, ScanCoordinator& coordinator,
                                                         Tools tools, std::string family, const SystemVersion& version)
    : ADScanControllerView(services.engine, coordinator), m_binaries(services), m_alerts(tools.alerts),
      m_family(std::move(family)), m_hasManyNames(version.isOnLeopardOrBetter()),
      m_keptSlices(allArchitecturesToLeavForArchitecture(m_family)),
      m_tasks(std::make_unique<ADTaskRunner>(tools.table, services.engine.log)) {
    rootNode()->setName(localizedString("UniversalBinaries"));
    initUserDefaults();
}

UniversalBinariesController::~UniversalBinariesController() { stopAndJoin(); }

std::vector<std::string>
UniversalBinariesController::allArchitecturesToLeavForArchitecture(std::string_view family) const {
    if (family == "intel") {
        return m_hasManyNames ? std::vector<std::string>{"i386", "x86_64",  "i486",     "i486SX",  "pentium",
                                                         "i586", "pentpro", "pentIIm3", "pentIIm5"}
                              : std::vector<std::string>{"i386", "x86_64"};
    }
    if (family == "ppc") {
        return m_hasManyNames
                   ? std::vector<std::string>{"ppc",    "ppc64",   "ppc601", "ppc603",  "ppc603e", "ppc603ev",
                                              "ppc604", "ppc604e", "ppc750", "ppc7400", "ppc7450"}
                   : std::vector<std::string>{"ppc", "ppc64"};
    }
    return {};
}

bool UniversalBinariesController::knowsArchitecture() {
    if (!m_keptSlices.empty())
        return true;
    if (m_saidUnknown.exchange(true))
        return false;
    services().log.log("Error: Couldn't find arch utility");
    Alert alert;
    alert.style = Alert::Style::Informational;
    alert.title = localizedString("Universal Binaries module error");
    alert.text = localizedString(
        "We apologize, but Sweeply couldn't define your Mac's architecture. Probably, you do not have /usr/bin/arch "
        "program installed, and this is why Universal Binary plugin is unable to find anything.");
    alert.buttons = {localizedButton("OK")};
    services().mainThread.runAndWait([&] { m_alerts.runAlert(alert); });
    return false;
}

bool UniversalBinariesController::shouldCleanApplication(const std::string& path) {
    return !isSlimedApplicationAtPath(path) && !m_binaries.ignoreList.applicationInList(path);
}

bool UniversalBinariesController::isSlimedApplicationAtPath(const std::string& path) const {
    return m_binaries.files.attributesOfItemAtPath(joinedPath(path, kMarker), Links::DontFollow).has_value();
}

bool UniversalBinariesController::markApplicationAtPathAsSlimed(const std::string& path) {
    return isSlimedApplicationAtPath(path) ||
           m_binaries.files.createFileAtPath(joinedPath(path, kMarker), {}).has_value();
}

void UniversalBinariesController::scanThread() {
    prepareForScan();
    m_candidates.clear(); // of a scan that was stopped
    if (!knowsArchitecture())
        return;
    setTotalProcentage(kWaitingForApplications);
    incProgress();
    auto surveys = m_binaries.surveys.takePart(interestIn);
    const auto applications = m_binaries.applicationsToScan(this);
    surveys.expect(applications);
    setTotalProcentage(static_cast<std::uint32_t>(applications.size()));
    for (const auto& application : applications) {
        if (stopped())
            return;
        if (shouldCleanApplication(application)) {
            searchForUBInPath(application, surveys);
            sleepAfterItem();
            waitWhilePaused();
        }
        incProgress();
    }
    addSlimmable();
}

void UniversalBinariesController::analyzeFile(const std::string& path) {
    if (!knowsArchitecture())
        return;
    const std::string item = normalisedPath(m_binaries.folders.expandTilde(path));
    auto surveys = m_binaries.surveys.takePart(interestIn);
    if (pathExtension(item) == "app") {
        analyzeApplication(item, surveys);
        return addSlimmable();
    }
    setTotalProcentage(kWaitingForFolder);
    incProgress();
    const auto applications = m_binaries.applications.createApplicationsArrayInPathDeep(item, this);
    surveys.expect(applications);
    setTotalProcentage(static_cast<std::uint32_t>(applications.size()));
    for (const auto& application : applications) {
        if (stopped())
            return;
        analyzeApplication(application, surveys);
        incProgress();
        sleepAfterItem();
        waitWhilePaused();
    }
    addSlimmable();
}

void UniversalBinariesController::analyzeApplication(const std::string& path, SharedSurveys::Part& surveys) {
    {
        // What is listed already would count twice.
        const std::lock_guard lock(services().treeLock);
        if (rootNode()->childWithEqualPath(path))
            return;
    }
    if (!m_binaries.ignoreList.applicationInListWithUserNotification(path))
        searchForUBInPath(path, surveys);
}

void UniversalBinariesController::searchForUBInPath(const std::string& application, SharedSurveys::Part& surveys) {
    setCurrentItem(application);
    for (auto& item : surveys.surveyOf(application, stopToken()).items) {
        if (stopped())
            return;
        if (item.type != FileType::Regular || (item.mode & kAnyExecution) == 0)
            continue;
        if (auto file = m_binaries.files.openForReading(item.path, Links::DontFollow))
            addCandidate({application, std::move(item.path), item.measured.identity, std::move(*file)});
        if (m_candidates.size() >= kAtOnce)
            addSlimmable();
    }
    // Who rests between applications has the time to show each at once.
    if (services().pace.threadSleep.count() > 0)
        addSlimmable();
}

void UniversalBinariesController::addCandidate(Candidate candidate) {
    const auto isFat = beginsLikeFat(candidate.file, candidate.path);
    if (!isFat)
        reportProblem(isFat.error());
    else if (*isFat)
        m_candidates.push_back(std::move(candidate));
}

void UniversalBinariesController::addSlimmable() {
    const auto sizes = foreignBytesOf(m_candidates);
    for (std::size_t i = 0; i < sizes.size() && !stopped(); ++i) {
        if (sizes[i] > 0)
            add(m_candidates[i], sizes[i]);
        waitWhilePaused();
    }
    m_candidates.clear();
}

void UniversalBinariesController::add(const Candidate& candidate, std::uint64_t size) {
    auto executable = Node::nodeWithName(m_binaries.folders.abbreviateWithTilde(candidate.path), Icon::None, 0, size,
                                         candidate.path, true);
    executable->setEvidence(m_evidence);
    executable->setSeen(candidate.identity);
    Node::Pointer application;
    {
        const std::lock_guard lock(services().treeLock);
        application = rootNode()->childWithEqualPath(candidate.application);
    }
    if (!application) {
        application = Node::nodeWithName(nameWithoutExtension(candidate.application), Icon::ItsOwn, 0, 0,
                                         candidate.application, true);
        addChildNode(application);
    }
    {
        const std::lock_guard lock(services().treeLock);
        application->addChild(std::move(executable));
    }
    incFoundObjectsCount();
    rootNodeChanged();
}

std::vector<std::uint64_t> UniversalBinariesController::foreignBytesOf(std::span<const Candidate> candidates) {
    std::vector<std::uint64_t> sizes;
    while (sizes.size() < candidates.size()) {
        // By descriptor: what the tool looks at is the file that was found, and its name is none to stumble over.
        const auto rest = candidates.subspan(sizes.size());
        ADTaskRunner::Arguments arguments{"-detailed_info"};
        std::vector<int> descriptors;
        for (const auto& candidate : rest) {
            arguments.push_back(nameOfDescriptor(candidate.file));
            descriptors.push_back(candidate.file.get());
        }
        const auto output = m_tasks->getOutput(kLipo, arguments, true, descriptors);
        const auto report = foreignBytesOfFiles(output.value_or(std::string()), m_keptSlices, services().log);
        for (const auto& candidate : rest) {
            const auto found = report.find(nameOfDescriptor(candidate.file));
            sizes.push_back(found == report.end() ? 0 : found->second);
            if (found == report.end())
                break; // the tool gives up at the first file that it cannot read: on with those after it
        }
    }
    return sizes;
}

std::uint64_t UniversalBinariesController::getUBSize(const std::string& path) {
    if (path.empty())
        return 0;
    auto file = m_binaries.files.openForReading(path);
    if (!file || !beginsLikeFat(*file, path).value_or(false))
        return 0;
    const Candidate alone{{}, path, {}, std::move(*file)};
    return foreignBytesOf({&alone, 1}).front();
}

ChangeRequest UniversalBinariesController::changeFor(const Node& node) const {
    auto request = requestFor(node, Operation::Slim);
    request.kind = ChangedKind::Slices;
    request.slices = m_keptSlices;
    return request;
}

ChangeOutcome UniversalBinariesController::cleanThisNode(Node& node) {
    auto outcome = change(changeFor(node));
    if (!outcome.isDone())
        return outcome;
    std::string finished;
    {
        const std::lock_guard lock(services().treeLock);
        if (const Node* application = node.parentNode(); application && application->childrenCount() == 1)
            finished = application->path();
    }
    if (!finished.empty())
        markApplicationAtPathAsSlimed(finished);
    return outcome;
}

} // namespace sweeply
