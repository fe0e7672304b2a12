#pragma once
// One row of the result list: its id (the row's index in the file list at the
// press of Repair, counted over all rows), its source file and its button.
#include <QString>

class CustomButton;

struct RowAction {
    unsigned int id = 0;
    QString sourcePath;
    CustomButton* button = nullptr;
};
