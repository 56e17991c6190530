#pragma once

class QLineEdit;

// Qt leaves the button that clears a line edit without a name. Does nothing for an edit that has none.
void nameClearButton(const QLineEdit *edit);

// A checkable push button is offered to assistive technology as a check box that can be toggled, which checks
// it without a click: no page would change. Makes the buttons of the pages what they are: one choice of
// several, pressed.
void offerPageButtonsForPressing();
