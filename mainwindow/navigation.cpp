#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"

#include <QPropertyAnimation>

namespace {

constexpr int panelSlideTime = 250; // milliseconds
constexpr int bannerSlideTime = 150;

constexpr QRect openPanel(0, 0, 1010, 700);
constexpr QRect closedPanel(1010, 0, 1010, 700);
constexpr QRect openBanner(10, 595, 220, 90);
constexpr QRect closedBanner(-230, 595, 220, 90);

struct Slide
{
    QRect from;
    QRect to;
    int duration = 0;
    QEasingCurve::Type easing = QEasingCurve::Linear;
};

// Nothing here stops an earlier slide of the same panel: Qt does, when the new one starts.
QPropertyAnimation *startSlide(QWidget *panel, const Slide &slide, QObject *parent = nullptr)
{
    auto *animation = new QPropertyAnimation(panel, "geometry", parent);
    animation->setDuration(slide.duration);
    animation->setEasingCurve(slide.easing);
    animation->setStartValue(slide.from);
    animation->setEndValue(slide.to);
    animation->start(QAbstractAnimation::DeleteWhenStopped);
    return animation;
}

} // namespace

void MainWindow::onTaskViewButtonClicked()
{
    showPage(ui->TaskViewButton, ui->TasksPage);
}

void MainWindow::onNewTaskViewButtonClicked()
{
    showPage(ui->NewTaskViewButton, ui->NewTasksPage);
}

void MainWindow::onSettingsViewButtonClicked()
{
    showPage(ui->SettingsViewButton, ui->SettingsPage);
}

void MainWindow::onProfileViewButtonClicked()
{
    showPage(ui->ProfileViewButton, ui->ProfilePage);
}

void MainWindow::onPatchNoticesViewButtonClicked()
{
    showPage(ui->PatchNoticesViewButton, ui->PatchPage);
}

void MainWindow::resetNavigation()
{
    closeTaskDetail();
    for (QPushButton *button : {ui->TaskViewButton, ui->NewTaskViewButton, ui->SettingsViewButton,
             ui->ProfileViewButton, ui->PatchNoticesViewButton}) {
        button->setChecked(false);
    }
}

void MainWindow::showPage(QPushButton *button, QWidget *page)
{
    resetNavigation();
    button->setChecked(true);
    setVisiblePage(page);
}

void MainWindow::setVisiblePage(QWidget *page)
{
    page->setVisible(true);
    for (QWidget *other :
        {ui->TasksPage, ui->NewTasksPage, ui->ProfilePage, ui->SettingsPage, ui->PatchPage}) {
        other->setVisible(other == page);
    }
}

void MainWindow::openTaskDetail()
{
    detailAnimation = startSlide(
        ui->TaskDetail, {ui->TaskDetail->geometry(), openPanel, panelSlideTime, QEasingCurve::OutCubic});
}

void MainWindow::closeTaskDetail()
{
    // The list has no selection before its model is set, and the tray menu works while a box of the start is
    // up.
    if (QItemSelectionModel *selection = ui->TaskListView->selectionModel()) {
        selection->clearSelection();
    }
    detailAnimation = startSlide(
        ui->TaskDetail, {ui->TaskDetail->geometry(), closedPanel, panelSlideTime, QEasingCurve::InCubic});
}

void MainWindow::showUpdateMessage()
{
    startSlide(ui->FrameUpdater, {closedBanner, openBanner, bannerSlideTime, QEasingCurve::OutCubic}, this);
}

void MainWindow::closeUpdateMessage()
{
    startSlide(ui->FrameUpdater, {openBanner, closedBanner, bannerSlideTime, QEasingCurve::InCubic}, this);
}
