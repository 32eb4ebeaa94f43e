// Pages that show one of several instances at a time.
#pragma once

// Another tab of the page's tab strip was selected: the shown instance goes into its buffer, the other one on the
// page. `page` follows the page protocol (confdlg.h).
template <class Page> void selectInstance(Page& page, int& current, int next) {
    page.storeDefaults(current);
    page.setDefaults(next);
    current = next;
    page.ToggleControls();
}
