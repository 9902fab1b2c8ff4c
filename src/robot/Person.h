#pragma once

#include "forms/Acts.h"

namespace zv {

/// The hands of a guion: does to the dialogs what a person does. An act on what cannot be acted upon does
/// nothing and returns false. Indices are within their range.
class Person {
public:
    virtual ~Person() = default;
    virtual bool focus(Control& control) = 0;
    virtual bool click(Control& control) = 0;
    virtual bool type(Control& control, StringView text) = 0;
    virtual bool key(Control& control, Key key) = 0;
    virtual bool paste(TextBox& box, StringView text) = 0;
    virtual bool select(TextBox& box, Long start, Long length) = 0;
    virtual bool choose(ComboBox& box, Long index) = 0;
    virtual bool clickCell(MSFlexGrid& grid, Long row, Long column) = 0;
    virtual bool doubleClickCell(MSFlexGrid& grid, Long row, Long column) = 0;
    virtual bool scroll(MSFlexGrid& grid, Long row) = 0;
    virtual bool clickTab(TabStrip& strip, Long tab) = 0;
    virtual bool clickBackground(Form& form) = 0;
    virtual bool close(Form& form) = 0;
};

} // namespace zv
