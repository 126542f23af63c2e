#pragma once

#include "core/lang/LangTable.h"

#include <wx/button.h>
#include <wx/sizer.h>

#include <initializer_list>
#include <utility>
#include <vector>

// A row of buttons of the tool windows: each labelled and named by its language key and bound
// to a handler of window, in the order given.
template <class Window>
std::vector<wxButton*> AddActionButtons(
    Window* window, wxSizer* row, int gap,
    std::initializer_list<std::pair<const char*, void (Window::*)(wxCommandEvent&)>> actions) {
    std::vector<wxButton*> buttons;
    for (const auto& [key, handler] : actions) {
        auto* button = new wxButton(window, wxID_ANY, GetLangText(key), wxDefaultPosition,
                                    wxDefaultSize, 0, wxDefaultValidator, key);
        button->Bind(wxEVT_BUTTON, handler, window);
        row->Add(button, 0, wxRIGHT, gap);
        buttons.push_back(button);
    }
    return buttons;
}
