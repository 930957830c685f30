#pragma once

#include "foundations/NotificationCenter.h"

/** The one catalogue of notification names. The comment behind each tells its object; none means an empty
 * object. */
namespace vantrel::notifications {

// Board changes
inline constexpr NotificationName TaskMoved{u"TaskMoved"}; // task id
inline constexpr NotificationName TaskDirectMoveRequested{
    u"TaskDirectMoveRequested"}; // user info, see TaskDirectMove
inline constexpr NotificationName TaskAddedToBoardState{u"TaskAddedToBoardState"};         // task id
inline constexpr NotificationName TaskBlockingStatusChanged{u"TaskBlockingStatusChanged"}; // task id
inline constexpr NotificationName TaskCompletionAnimation{
    u"TaskCompletionAnimation"}; // task id, also "taskId"
inline constexpr NotificationName PreviewAnimationTrigger{u"PreviewAnimationTrigger"};
inline constexpr NotificationName BoardStateChanged{u"BoardStateChanged"}; // "fromSettings" or none
inline constexpr NotificationName ColumnsUpdated{u"ColumnsUpdated"};       // "fromSettings"
inline constexpr NotificationName SwimlanesUpdated{u"SwimlanesUpdated"};   // "fromSettings"
inline constexpr NotificationName SwimLaneWIPCountsChanged{u"swimLaneWIPCountsChanged"}; // the BoardState
inline constexpr NotificationName WIPThresholdChanged{u"WIPThresholdChanged"};           // user info
inline constexpr NotificationName SwimLaneIsolationChanged{u"SwimLaneIsolationChanged"};
inline constexpr NotificationName TaskFocusModeChanged{u"TaskFocusModeChanged"};
inline constexpr NotificationName EisenhowerPriorityUpdated{
    u"EisenhowerPriorityUpdated"}; // the menu adds user info
inline constexpr NotificationName PriorityAssignmentFailed{u"PriorityAssignmentFailed"}; // user info
inline constexpr NotificationName TagFilterUpdated{u"TagFilterUpdated"};

// Card and keyboard focus
inline constexpr NotificationName TaskCardSelected{u"TaskCardSelected"};   // task id
inline constexpr NotificationName TaskFocusChanged{u"TaskFocusChanged"};   // task id
inline constexpr NotificationName TaskTabNavigation{u"TaskTabNavigation"}; // task id
inline constexpr NotificationName StartTaskNameEditing{u"StartTaskNameEditing"};
inline constexpr NotificationName CommitTaskNameEditing{u"CommitTaskNameEditing"};

// Commands
inline constexpr NotificationName ShowQuickTaskEntry{u"ShowQuickTaskEntry"};
inline constexpr NotificationName RefreshTasksRequested{u"RefreshTasksRequested"};
inline constexpr NotificationName SwitchToVisualizeView{u"SwitchToVisualizeView"};
inline constexpr NotificationName SwitchToPrioritizeView{u"SwitchToPrioritizeView"};
inline constexpr NotificationName SwitchToAnalyzeView{u"SwitchToAnalyzeView"};
inline constexpr NotificationName SwitchToOptimizeView{u"SwitchToOptimizeView"};
inline constexpr NotificationName MoveTaskUpRequested{u"MoveTaskUpRequested"};
inline constexpr NotificationName MoveTaskDownRequested{u"MoveTaskDownRequested"};
inline constexpr NotificationName MoveTaskToNextColumnRequested{u"MoveTaskToNextColumnRequested"};
inline constexpr NotificationName MoveTaskToPreviousColumnRequested{u"MoveTaskToPreviousColumnRequested"};
inline constexpr NotificationName MoveTaskToNextSwimLaneRequested{u"MoveTaskToNextSwimLaneRequested"};
inline constexpr NotificationName MoveTaskToPreviousSwimLaneRequested{u"MoveTaskToPreviousSwimLaneRequested"};
inline constexpr NotificationName CmdShiftEnterToCompleteRequested{u"CmdShiftEnterToCompleteRequested"};
inline constexpr NotificationName ToggleTaskBlockedRequested{u"ToggleTaskBlockedRequested"};
inline constexpr NotificationName ToggleTaskFlagRequested{u"ToggleTaskFlagRequested"};
inline constexpr NotificationName ToggleTaskFocusModeRequested{u"ToggleTaskFocusModeRequested"};
inline constexpr NotificationName ToggleTagSidebarRequested{u"ToggleTagSidebarRequested"};
inline constexpr NotificationName ClearTagFiltersRequested{u"ClearTagFiltersRequested"};
inline constexpr NotificationName ToggleFlaggedFilterRequested{u"ToggleFlaggedFilterRequested"};
inline constexpr NotificationName ToggleSwimLaneExpansionRequested{
    u"ToggleSwimLaneExpansionRequested"}; // index from 0
inline constexpr NotificationName ZoomInRequested{u"ZoomInRequested"};
inline constexpr NotificationName ZoomOutRequested{u"ZoomOutRequested"};
inline constexpr NotificationName ResetZoomRequested{u"ResetZoomRequested"};
inline constexpr NotificationName ProjectDisplayToggled{u"ProjectDisplayToggled"};

// Exchange, sources, settings
inline constexpr NotificationName ShowTaskImportView{u"ShowTaskImportView"};
inline constexpr NotificationName ShowTaskExportView{u"ShowTaskExportView"};
inline constexpr NotificationName QuickExportVisibleTasks{u"QuickExportVisibleTasks"};
inline constexpr NotificationName QuickExportPlainTextTasks{u"QuickExportPlainTextTasks"};
inline constexpr NotificationName TaskSourceAvailabilityChanged{
    u"TaskSourceAvailabilityChanged"}; // configuration
inline constexpr NotificationName TaskSourceConfigurationChanged{u"TaskSourceConfigurationChanged"};
inline constexpr NotificationName SettingsTabChanged{u"SettingsTabChanged"}; // pane id
inline constexpr NotificationName TaskLoadingComplete{u"TaskLoadingComplete"};
inline constexpr NotificationName TaskLoadingError{u"TaskLoadingError"}; // the error's text

} // namespace vantrel::notifications
