// The environment's selection, as lists and by the model's own ids.
#ifndef KVO_SELECTION_H
#define KVO_SELECTION_H

#include <string>
#include <vector>

#include "id_list.h"
#include "picker.h"

class CAEEnv;

namespace kvo {

class SessionModel;

struct SelectedMember
{
    unsigned int part = 0;   // index
    unsigned int member = 0; // index of the element or node; 0 for a part
};

// What is selected of one kind (PICK_TYPE_...), in the order of the model.
std::vector<SelectedMember> readSelection(const CAEEnv& env, unsigned int type);

// Takes the selection of one kind away and puts it back in the end, instead of what is selected then.
class KeptSelection
{
public:
    KeptSelection(CAEEnv& env, unsigned int type);
    ~KeptSelection();
    KeptSelection(const KeptSelection&) = delete;
    KeptSelection& operator=(const KeptSelection&) = delete;

private:
    CAEEnv& env;
    unsigned int type;
    std::vector<unsigned int> flags; // a part's selection bit
    std::vector<SelectedMember> members;
};

// Adds to the selection.
void select(CAEEnv& env, unsigned int type, unsigned int part, unsigned int member);

// By the model's ids, in every part that has them unless the list names a part. Leaves visible what is visible. Throws
// ProgramError for a single id, or a part, that the model does not have; a range takes what is there.
void selectIds(SessionModel& model, unsigned int type, const std::vector<IdPiece>& ids);
void highlightIds(CAEEnv& env, const std::vector<IdPiece>& partIds);

// type: PICK_TYPE_..., PART_HIGHLIGHTED, or 0 for everything.
void clearSelection(CAEEnv& env, int type);

// Shows or hides parts; no ids: all of them. Throws as selectIds.
void setVisible(CAEEnv& env, const std::vector<IdPiece>& partIds, bool visible);

} // namespace kvo

#endif
