#include "core/greeting.h"
#include "core/preferences.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"
#include "widgets/accessibility.h"
#include "widgets/circularpicture.h"

#include <QFileDialog>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

void MainWindow::loadUserInfo()
{
    const QSettings store = preferences::mainStore();
    const QString firstName = store.value(preferences::firstName, QString()).toString();
    const QString email = store.value(preferences::email, QString()).toString();
    ui->UserName->setText(firstName.isEmpty() ? guestName() : firstName);
    // The sample address stands in the form alone, as the field's placeholder.
    ui->UserMail->setText(email.isEmpty() ? ui->UserMail->placeholderText() : email);
}

void MainWindow::setProfileEditable(bool editable)
{
    (editable ? ui->SetProfileInfo : ui->SaveProfileInfo)->hide();
    (editable ? ui->SaveProfileInfo : ui->SetProfileInfo)->show();
    for (QLineEdit *field : {ui->UserName, ui->UserMail}) {
        field->setEnabled(editable);
        field->setClearButtonEnabled(editable);
        nameClearButton(field);
    }
}

void MainWindow::showEditProfile()
{
    setProfileEditable(true);
}

void MainWindow::saveProfileInfo()
{
    QSettings store = preferences::mainStore();
    store.setValue(preferences::firstName, ui->UserName->text());
    store.setValue(preferences::email, ui->UserMail->text());
    updateLabels(ui->DisplayMessage->currentIndex());
    showTrayMessage(u"Perfil actualizado"_s, u"La información del perfil ha sido guardada exitosamente."_s);
    setProfileEditable(false);
}

void MainWindow::changeProfilePicture()
{
    const QString path = QFileDialog::getOpenFileName(
        this, u"Cargar imagen"_s, QString(), u"Image Files (*.png *.jpg *.bmp)"_s);
    if (path.isEmpty()) {
        return;
    }
    showProfilePicture(path);
    QSettings store = preferences::mainStore();
    store.setValue(preferences::profilePicturePath, path);
}

void MainWindow::loadProfilePicture()
{
    const QSettings store = preferences::mainStore();
    const QString path = store.value(preferences::profilePicturePath, QString()).toString();
    if (!path.isEmpty() && QFileInfo(path).isFile()) {
        showProfilePicture(path);
    }
}

void MainWindow::showProfilePicture(const QString &path)
{
    ui->ProfilePicture->setPixmap(circularPicture(path, ui->ProfilePicture->size()));
}
