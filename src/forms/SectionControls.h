#pragma once

#include <vector>

namespace zv {

class ComboBox;
class CommandButton;
class Control;
class Form;
class MSFlexGrid;
class TabStrip;

/// What views need to know of a form to help a person in it, found by the controls' places and captions and
/// not by their names. A form holds a section of pupils if a list stands before the buttons "<" and ">".
struct SectionControls {
    explicit SectionControls(Form& owner);

    bool isSection() const { return pupils != nullptr; }
    /// Number (`ItemData`) of the pupil that is shown; -1 for none.
    int pupil() const;
    /// Whether the grid is shown and its floating list belongs to the current cell.
    bool ratingOpen() const;

    Form& form;
    ComboBox* pupils = nullptr;
    CommandButton* previous = nullptr;
    CommandButton* next = nullptr;
    /// The last two buttons: one saves the section, the other leaves it unsaved. nullptr if the form holds
    /// none.
    CommandButton* accept = nullptr;
    CommandButton* cancel = nullptr;
    TabStrip* strip = nullptr;
    MSFlexGrid* grid = nullptr;
    /// List that code lays over a cell of the grid, or nullptr.
    ComboBox* floating = nullptr;
    /// Number of the strip's pages that show nothing but the grid.
    int gridPages = 0;
    /// Texts and lists that belong to the pupil shown.
    std::vector<Control*> fields;
};

} // namespace zv
