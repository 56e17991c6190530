#include "widgets/accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace {

class PageButton final : public QAccessibleWidget
{
public:
    explicit PageButton(QPushButton *button)
        : QAccessibleWidget(button, QAccessible::RadioButton)
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = true;
        state.checked = button()->isChecked();
        return state;
    }

    QStringList actionNames() const override { return {pressAction()}; }

    void doAction(const QString &action) override
    {
        if (action == pressAction()) {
            button()->click();
        }
    }

private:
    QPushButton *button() const { return qobject_cast<QPushButton *>(object()); }
};

// Assistive technology that runs already asks while the form is being built: a name is all there is by then.
QAccessibleInterface *makePageButton(const QString &, QObject *object)
{
    auto *button = qobject_cast<QPushButton *>(object);
    return button && button->objectName().endsWith("ViewButton"_L1) ? new PageButton(button) : nullptr;
}

} // namespace

void nameClearButton(const QLineEdit *edit)
{
    if (auto *button = edit->findChild<QToolButton *>()) {
        button->setAccessibleName(u"Borrar el texto"_s);
    }
}

void offerPageButtonsForPressing()
{
    QAccessible::installFactory(makePageButton);
}
