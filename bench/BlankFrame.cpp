// A blank wxWidgets frame and nothing else: the start that PanelBench compares the panel's with.
#include <wx/app.h>
#include <wx/frame.h>

class BlankFrameApp : public wxApp {
public:
    bool OnInit() override {
        (new wxFrame(nullptr, wxID_ANY, "Blank"))->Show();
        return true;
    }
};

wxIMPLEMENT_APP(BlankFrameApp);
