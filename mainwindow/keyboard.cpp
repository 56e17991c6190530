#include "core/manual.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"
#include "widgets/focusframe.h"
#include "widgets/focusonshow.h"
#include "widgets/keyhandler.h"
#include "widgets/tabstops.h"
#include "widgets/tiplook.h"

#include <QAccessible>
#include <QDesktopServices>
#include <QMessageBox>
#include <QShortcut>
#include <QStringListModel>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

template <typename Function> void addKey(QWidget *window, const QString &keys, Function function)
{
    auto *shortcut = new QShortcut(QKeySequence(keys), window);
    shortcut->setAutoRepeat(false);
    QObject::connect(shortcut, &QShortcut::activated, shortcut, function);
}

/// Tells the key to those who point at the button and to those who listen.
void explainKey(QAbstractButton *button, const QString &keys)
{
    const QString name = button->text().isEmpty() ? button->accessibleName() : button->text().trimmed();
    button->setToolTip(u"%1 (%2)"_s.arg(name, keys));
    button->setAccessibleDescription(u"%1 Tecla: %2."_s.arg(button->accessibleDescription(), keys));
}

void openManual(QWidget *window)
{
    const QString page = installedManual(QCoreApplication::applicationDirPath());
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(page))) { // nor can an empty one be opened
        QMessageBox::warning(window, u"Manual"_s, u"No se pudo abrir el manual."_s);
    }
}

} // namespace

void MainWindow::setUpKeyboard()
{
    addKey(this, u"F1"_s, [this] { openManual(this); });
    addPageKeys();
    addTaskKeys();
    addListKeys();
    explainKeys();
    setUpFocus();
}

void MainWindow::addPageKeys()
{
    const QList<QPushButton *> inMenuOrder = {ui->TaskViewButton, ui->NewTaskViewButton,
        ui->ProfileViewButton, ui->SettingsViewButton, ui->PatchNoticesViewButton};
    for (qsizetype page = 0; page < inMenuOrder.size(); ++page) {
        addKey(this, u"Ctrl+%1"_s.arg(page + 1), [button = inMenuOrder.at(page)] { button->click(); });
    }
    addKey(this, u"Ctrl+N"_s, [this] {
        ui->NewTaskViewButton->click();
        ui->TaskTitle->setFocus(); // without selecting what is written there, as a shortcut's focus would
    });
    addKey(this, u"Ctrl+F"_s, [this] {
        if (detailOpen || !ui->TasksPage->isVisible()) {
            ui->TaskViewButton->click();
        }
        ui->SearchTask->setFocus(Qt::ShortcutFocusReason);
    });
}

void MainWindow::addTaskKeys()
{
    addKey(this, u"Ctrl+S"_s, [this] {
        if (ui->NewTasksPage->isVisible()) {
            ui->SaveTaskButton->click();
        } else if (detailOpen) {
            ui->UpdateTaskBtn->click();
        }
    });
    addKey(this, u"Ctrl+T"_s, [this] {
        if (detailOpen) {
            ui->FinishTaskBtn->click();
        }
    });
    addKey(this, u"Ctrl+L"_s, [this] {
        if (ui->NewTasksPage->isVisible()) {
            ui->CleanTaskButton->click();
        }
    });
}

void MainWindow::addListKeys()
{
    // On the panel itself as well: the focus is there after a step, and going on is the next thing wanted.
    for (QWidget *place : {static_cast<QWidget *>(ui->SearchTask), ui->TaskDetail}) {
        const auto addStep = [this, place](Qt::Key key, auto rows) {
            new KeyHandler(place, key, [this, place, rows] {
                const bool isHere = place->hasFocus();
                if (isHere) {
                    stepThroughRows(rows());
                }
                return isHere;
            });
        };
        addStep(Qt::Key_Down, [] { return 1; });
        addStep(Qt::Key_Up, [] { return -1; });
        addStep(Qt::Key_PageDown, [this] { return rowsOfAPage(); });
        addStep(Qt::Key_PageUp, [this] { return -rowsOfAPage(); });
    }
    new KeyHandler(ui->SearchTask, Qt::Key_Escape, [this] {
        const bool hasText = !ui->SearchTask->text().isEmpty();
        ui->SearchTask->clear();
        return hasText;
    });
    new KeyHandler(this, Qt::Key_Escape, [this] {
        const bool wasOpen = detailOpen;
        if (wasOpen) {
            ui->CloseDetailTaskBtn->click();
        }
        return wasOpen;
    });
}

int MainWindow::rowsOfAPage() const
{
    return std::max(
        1, ui->TaskListView->viewport()->height() / std::max(1, ui->TaskListView->sizeHintForRow(0)));
}

void MainWindow::stepThroughRows(int rows)
{
    const int last = taskModel->rowCount() - 1;
    if (last < 0) {
        return;
    }
    const QModelIndex current = ui->TaskListView->currentIndex();
    // From no row, every step leads to the first.
    const int row = current.isValid() ? std::clamp(current.row() + rows, 0, last) : 0;
    openRow(taskModel->index(row));
}

void MainWindow::openRow(const QModelIndex &row)
{
    if (row != ui->TaskListView->currentIndex()) {
        ui->TaskListView->setCurrentIndex(row);
    } else if (!detailOpen) {
        // Closing the panel leaves its row the current one, so that nothing would open it again.
        ui->TaskListView->selectionModel()->select(row, QItemSelectionModel::ClearAndSelect);
        showTaskDetails(row);
    }
}

void MainWindow::explainKeys()
{
    explainKey(ui->TaskViewButton, u"Ctrl+1"_s);
    explainKey(ui->NewTaskViewButton, u"Ctrl+2"_s);
    explainKey(ui->ProfileViewButton, u"Ctrl+3"_s);
    explainKey(ui->SettingsViewButton, u"Ctrl+4"_s);
    explainKey(ui->PatchNoticesViewButton, u"Ctrl+5"_s);
    explainKey(ui->SaveTaskButton, u"Ctrl+S"_s);
    explainKey(ui->UpdateTaskBtn, u"Ctrl+S"_s);
    explainKey(ui->FinishTaskBtn, u"Ctrl+T"_s);
    explainKey(ui->CleanTaskButton, u"Ctrl+L"_s);
    explainKey(ui->CloseDetailTaskBtn, u"Esc"_s);
    new TipLook(this);
}

void MainWindow::setUpFocus()
{
    new FocusOnShow(ui->TasksPage, ui->SearchTask);
    new FocusOnShow(ui->NewTasksPage, ui->TaskTitle);
    for (QWidget *page : {ui->ProfilePage, ui->SettingsPage, ui->PatchPage}) {
        new FocusOnShow(page, page);
    }
    // Each of the two buttons hides itself, and the focus would go with it.
    connect(ui->SetProfileInfo, &QPushButton::clicked, ui->UserName, [this] { ui->UserName->setFocus(); });
    connect(ui->SaveProfileInfo, &QPushButton::clicked, ui->SetProfileInfo,
        [this] { ui->SetProfileInfo->setFocus(); });
    for (QTextEdit *description : {ui->TaskDescription, ui->TaskDescriptionView}) {
        description->setTabChangesFocus(true);
    }
    new TabStops(this, [this] { return tabStops(); });
    new FocusFrame(this); // last, to see the keys that are used up by what is set up before it
}

QList<QWidget *> MainWindow::tabStops() const
{
    if (detailOpen) {
        return {ui->CloseDetailTaskBtn, ui->TaskDetail, ui->TaskTitleView, ui->TaskDescriptionView,
            ui->CategoryTaskBoxView, ui->DateLimitTaskView, ui->UrgencyTaskBoxView, ui->DeleteTaskBtn,
            ui->FinishTaskBtn, ui->UpdateTaskBtn};
    }
    // Only those of the page that is shown count.
    QList<QWidget *> stops = {ui->TasksPage, ui->SearchTask, ui->OrderNotesBy, ui->NewTasksPage,
        ui->TaskTitle, ui->TaskDescription, ui->CategoryTaskBox, ui->DateLimitTask, ui->UrgencyTaskBox,
        ui->CleanTaskButton, ui->CancelTaskButton, ui->SaveTaskButton, ui->ProfilePage, ui->UserName,
        ui->UserMail, ui->SetProfile, ui->SetProfileInfo, ui->SaveProfileInfo, ui->SettingsPage,
        ui->SimpleNotify, ui->AdvancedNotify, ui->changeClose, ui->DisplayMessage, ui->ChangeTextTheme,
        ui->ChangeColorTheme, ui->PatchPage};
    if (ui->FrameUpdater->geometry().intersects(ui->MainMenu->rect())) {
        stops += {ui->CancelUpdate, ui->StartUpdate};
    }
    return stops;
}

void MainWindow::enterTaskDetail()
{
    detailOpen = true;
    ui->TaskTitleView->home(false);
    ui->TaskDetail->setAccessibleDescription(ui->TaskTitleView->text());
    // The panel itself: whatever is typed without a look at it changes nothing.
    if (!ui->TaskDetail->hasFocus()) {
        ui->TaskDetail->setFocus();
    } else {
        // Another task is shown in it: those who listen hear of that as well.
        QAccessibleEvent event(ui->TaskDetail, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

void MainWindow::leaveTaskDetail()
{
    detailOpen = false;
    const QWidget *focus = focusWidget();
    if (focus == ui->TaskDetail || ui->TaskDetail->isAncestorOf(focus)) {
        ui->SearchTask->setFocus();
    }
}
