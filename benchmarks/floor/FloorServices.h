#pragma once

#include "FloorConversions.h"
#include "FloorExport.h"
#include "FloorText.h"

#include <BaseUtilities/UIEnumerations.h>

#include <QObject>
#include <QStandardPaths>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

using FloorView = Floor::View;

/// One signal of each kind that CQtSignaler has.
class FLOOR_EXPORT CFloorSignaler : public QObject
{
    Q_OBJECT

public:
    CFloorSignaler();
    ~CFloorSignaler() override;

Q_SIGNALS:
    void UpdateResults();
    bool AbortTestSuite(bool);
    void BooleanChoice(EUIMode uiType, std::uint32_t timeout, FloorView const& text,
                       bool* returnValue, FloorView const& truePromptText,
                       FloorView const& falsePromptText,
                       gui::EAbortPromptState showAbortTestSuitePrompt,
                       FloorView const& abortTestSuitePromptText);
    std::optional<Floor::CText> PickSingleFile(FloorView const&, FloorView const&, FloorView const&,
                                               FloorView const&);
    Floor::Owner<std::optional<std::vector<Floor::CText>>>
    PickMultipleFiles(FloorView const&, FloorView const&, FloorView const&, FloorView const&);
};

namespace Floor
{
// One for the whole process, as the flags of TQUserAbort.
inline FLOOR_EXPORT bool abortRequested = false;
inline FLOOR_EXPORT bool paused = false;

FLOOR_EXPORT bool AbortRequested();
FLOOR_EXPORT bool IsPaused();

FLOOR_EXPORT bool CheckEnvVar(View const& name);
FLOOR_EXPORT CText GetStandardDirName(QStandardPaths::StandardLocation location);
FLOOR_EXPORT CText GetWorkFilesFolderPathName();
FLOOR_EXPORT CText AppendToPath(View const& base, View const& name);
FLOOR_EXPORT CText AppendToPath(std::filesystem::path const& base, View const& name);
FLOOR_EXPORT std::optional<CText> CopyFile(View const& source, View const& destination);
FLOOR_EXPORT bool System(View const& command, View const& arguments, View const& workingFolder);
} // namespace Floor
