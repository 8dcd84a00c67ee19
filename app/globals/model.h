#pragma once

#include <QString>
#include <QStringList>

#include <atomic>

extern const QStringList g_modelNames; ///< model index -> name as the device reports it

/// Index into g_modelNames of the device that is driven. Any thread reads and writes it without a lock.
extern std::atomic<qint32> g_modelIndex;

/// The device has reported its model; this is also the flag "connected". Cleared whenever the connection resets
/// g_modelIndex. Any thread reads and writes it without a lock.
extern std::atomic<bool> g_modelConfirmed;

/// Takes the model that the device reports of itself. Only the wider head's name counts: the other is what the client
/// assumes unasked, so it confirms nothing and is asked for again. Any thread.
/// @return whether the name counted
bool takeReportedModel(const QString& name);

/// Assumes the narrower head again, as for each printer that has not told its model yet. Any thread.
void forgetReportedModel();

/// Dots in one line of a model's head: 576 for model index 1, 384 for every other value.
int headWidth(int index);

/// headWidth() of the device that is driven.
int printHeadWidth();

/// "Quillbox_K1" for 0, "Quillbox_K2" for 1, else empty.
QString modelName(int index);

/// Index of the named model; 0 also for a name that no model has, which thereby selects the first model.
int modelIndex(const QString& name);
