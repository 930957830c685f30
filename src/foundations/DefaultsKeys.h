#pragma once

#include <QStringView>

/** Every key of the user defaults. The default value of a key is the business of its reader. */
namespace vantrel::keys {

inline constexpr QStringView RetrievalDays = u"retrievalDays";
inline constexpr QStringView WorkAgeWarningDays = u"workAgeWarningDays";
inline constexpr QStringView ShowProjectInfo = u"showProjectInfo";
inline constexpr QStringView UseColumnHeaderColorAsBackground = u"useColumnHeaderColorAsBackground";
inline constexpr QStringView CelebrateCompletion = u"celebrateCompletion";
inline constexpr QStringView SoundsEnabled = u"soundsEnabled";
inline constexpr QStringView ShowFlaggedEffects = u"showFlaggedEffects";
inline constexpr QStringView EnableSpaceToMoveNext = u"enableSpaceToMoveNext";
inline constexpr QStringView EnableCmdShiftEnterToComplete = u"enableCmdShiftEnterToComplete";
inline constexpr QStringView ExcludeDoneTasksFromFilter = u"excludeDoneTasksFromFilter";
inline constexpr QStringView DefaultTaskManagerForQuickEntry = u"defaultTaskManagerForQuickEntry";
inline constexpr QStringView IsOmniFocusEnabled = u"isOmniFocusEnabled";
inline constexpr QStringView IsRemindersEnabled = u"isRemindersEnabled";
inline constexpr QStringView IsPlainTextEnabled = u"isPlainTextEnabled";
inline constexpr QStringView RemindersFolder = u"remindersFolder";
inline constexpr QStringView DueSoonDays = u"dueSoonDays";
inline constexpr QStringView DueSoonTime = u"dueSoonTime";
inline constexpr QStringView AppConfiguration = u"appConfiguration";
inline constexpr QStringView DevAppConfiguration = u"devAppConfiguration";
inline constexpr QStringView MinimumLogLevel = u"vantrel.minimumLogLevel";
inline constexpr QStringView WIPGaugeSettings = u"vantrel.wipGaugeSettings";
inline constexpr QStringView FirstRunCompleted = u"vantrel_first_run_completed";

} // namespace vantrel::keys
