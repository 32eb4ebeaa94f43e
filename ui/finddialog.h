// Finding texts in a table.
#pragma once

class zApplication;
class zTable;

// Ctrl+F in the table opens a small window that asks for a text and finds it; Ctrl+G finds the next one, of
// the text that was sought last in any table. The application must live as long as the table.
void offerFinding(zApplication& application, zTable& table);
