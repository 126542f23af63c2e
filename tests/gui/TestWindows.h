#pragma once

class wxWindow;

// Destroys a top-level window and runs the idle work that really deletes it, so that the next
// test starts with a clear screen.
void CloseWindow(wxWindow* window);
