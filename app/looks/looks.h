#pragma once

#include <QLatin1StringView>

class QPushButton;
class QWidget;

// Colours of the operator's window that change, or that the form does not set. GUI thread.

namespace looks {

/// A learn button whose control is learnt, not learnt, or being learnt.
extern const QLatin1StringView learnt;
extern const QLatin1StringView notLearnt;
extern const QLatin1StringView learning;
/// A switch that is on, or off.
extern const QLatin1StringView switchedOn;
extern const QLatin1StringView switchedOff;
/// The status of a host that is ready, or not.
extern const QLatin1StringView hostReady;
extern const QLatin1StringView hostNotReady;
/// A check box; the form's style has no rule for one, and the system's would be dark on dark.
extern const QLatin1StringView checkBox;

/// Sets the style sheet of `widget` if it differs: setting one is slow even if nothing changes.
void apply(QWidget *widget, QLatin1StringView look);

/// Shows `button` faded but legible whenever it is disabled; its style sheets have no rule for
/// that, or only one for the background. Call once per button; costs nothing while it is enabled.
void fadeWhileDisabled(QPushButton *button);

} // namespace looks
