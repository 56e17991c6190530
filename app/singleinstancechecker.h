#pragma once

#include <QObject>
#include <QSharedMemory>

/**
 * The instance marker: a one-byte shared-memory segment whose existence tells that a copy of the program
 * runs.
 *
 * The marker is held from construction to destruction. Where it can neither be created nor attached to,
 * this copy counts as the first one.
 */
class SingleInstanceChecker final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SingleInstanceChecker)
public:
    explicit SingleInstanceChecker(QObject *parent = nullptr);
    ~SingleInstanceChecker() override;

    /// True when another copy held the marker at construction.
    bool isAlreadyRunning() const;

private:
    bool createMarker();

    QSharedMemory sharedMemory;
    bool alreadyRunning = false;
};
