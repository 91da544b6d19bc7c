// SPDX-License-Identifier: Apache-2.0
#include "cli/program/verb_table.h"

#include <array>

#include "cli/program/verbs.h"

namespace kv::cli {

namespace {

// A password is changed among the other things of a user, and by everybody who remembers only this.
constexpr const char* kPasswordHelp =
    "Give a user a new password, from KVVESK_NEW_PASSWORD or the terminal";

constexpr auto kVerbs = std::to_array<Verb>({
    {"new", "Make an empty register with an administrator, or a database of users and actions",
     registerNew},
    {"documents", "List documents, all or those of a saved query", documentList,
     "Columns: ID, DocumentID, DocumentTitle, DocumentNumber, RevisionLevel, EffectiveDate, "
     "DocUser1 to\nDocUser4, DocumentNotes, SecurityLevel, Location, Controlled, "
     "CurrentRevID.\nSecured documents are listed for administrators only."},
    {"document", "Show, add, change or delete one document"},
    {"document show", "Show all fields of a document", documentShow},
    {"document add", "Add a document and its first revision", documentAdd,
     "A new document is controlled and not secured unless the options say otherwise.\nIts "
     "identifier is printed; show, edit, delete and revision take that or its number."},
    {"document edit", "Change fields of a document", documentEdit,
     "Fields that are not given stay as they are; an empty text empties a field.\n--controlled no "
     "takes the document out of every manual, collects its hard copies, empties its\napproval list "
     "and deletes its revisions but the current one.\n--controlled yes puts the revision in force "
     "that was kept, if there is one."},
    {"document delete", "Delete a document with its revisions, owners, approvers and copies",
     documentDelete},
    {"revisions", "List the revisions of a document", revisionList},
    {"revision", "Show, add, change, approve or delete one revision"},
    {"revision show", "Show all fields of a revision", revisionShow},
    {"revision add", "Add a revision that is being prepared to a document", revisionAdd},
    {"revision edit", "Change fields of a revision", revisionEdit,
     "Fields that are not given stay as they are; an empty text empties a field.\nA revision that "
     "has a location is saved only while there is a file; paths that do not begin\nat the root "
     "count from the current folder."},
    {"revision status", "Say where a revision stands, and who has decided what", revisionStatus},
    {"revision route", "Ask the approvers of the document for their approval", revisionRoute,
     "The first time, the document's approvers become those of the revision, in their order; later "
     "changes\nof the document's list do not reach it. The first approver is told. A revision of a "
     "document without\napprovers is approved at once."},
    {"revision approve", "Approve a revision when it is your turn", revisionApprove,
     "The next approver is told, if the register's options say so. When all have approved, the "
     "revision is\napproved; 'kvvesk revision set-current' puts it in force."},
    {"revision reject", "Reject a revision when it is your turn", revisionReject,
     "The responsible user is told, if the register's options say so. 'kvvesk revision route' asks "
     "the\napprovers once more."},
    {"revision set-current", "Put a revision in force; the one before goes out of date",
     revisionSetCurrent,
     "It has to be approved, or to have been in force before; where the document has no approvers, "
     "it may\ncome straight from its preparation. Holders of copies are told, if the register's "
     "options say so."},
    {"revision delete", "Delete a revision, not the file at its location; never the one in force",
     revisionDelete},
    {"manuals", "List manuals, all or those of a saved query", manualList,
     "Columns: ID, ManualID, ManualName, ManUser1 to ManUser4, ManUserMemo."},
    {"manual", "Show, add, change or delete one manual; change which documents are in it"},
    {"manual show", "Show all fields of a manual", manualShow},
    {"manual add", "Add a manual, without documents as yet", manualAdd,
     "Its identifier is printed; the other verbs take that or its name."},
    {"manual edit", "Change fields of a manual", manualEdit,
     "Fields that are not given stay as they are; an empty text empties a field."},
    {"manual delete", "Delete a manual with its copies; the documents in it stay in the register",
     manualDelete},
    {"manual contents", "List the documents in a manual, in its order", manualContents,
     "Secured documents are listed for administrators and their owners only."},
    {"manual copies", "List who has a manual, as hard copies or on a personal list", manualCopies},
    {"manual put", "Put a document into a manual and into all copies of it", manualPut,
     "Without a place it comes behind the documents whose order has been settled."},
    {"manual take", "Take a document out of a manual and out of all copies of it", manualTake},
    {"manual move", "Move a document within a manual", manualMove,
     "The register keeps an order, no places: mostly a document comes to stand behind the one that "
     "is at\nthe place given. The answer says where it stands now."},
    {"release", "Give a document or a manual to a user", copyRelease,
     "The number that is printed is the one to collect by: a document's release number, or a "
     "manual's\ncopy number."},
    {"collect", "Take hard copies back from a user", copyCollect,
     "What is on personal lists is taken off by 'kvvesk personal remove'."},
    {"personal", "Change what is on a user's personal list"},
    {"personal add", "Put a document or a manual on a personal list", personalAdd},
    {"personal remove", "Take a document or a manual off a personal list", personalRemove},
    {"holdings", "List the copies that somebody has", copyHoldings,
     "RevisionLevel is that of the copy, CurrentRevisionLevel that of the revision in force. State "
     "is current\nor stale, or uncontrolled for documents that are not under control.\nSecured "
     "documents are listed for administrators and their owners only."},
    {"releases", "List who has which copies", copyReleases,
     "RevisionLevel is that of the copy, CurrentRevisionLevel that of the revision in force. State "
     "is current\nor stale, or uncontrolled for documents that are not under control.\nSecured "
     "documents are listed for administrators and their owners only."},
    {"stale", "List the copies that are not of the revision in force", copyStale,
     "RevisionLevel is that of the copy, CurrentRevisionLevel that of the revision in force, empty "
     "when\nthere is none. Copies of uncontrolled documents are never stale.\nExit status is 0 "
     "whether or not there are any.\nSecured documents are listed for administrators and their "
     "owners only."},
    {"owners", "Show or change who owns a document"},
    {"owners show", "Show the owners of a document", ownerShow},
    {"owners add", "Make a user an owner of a document", ownerAdd},
    {"owners remove", "Let a user be an owner no longer", ownerRemove},
    {"approvers", "Show or change who must approve the revisions of a document, in which order"},
    {"approvers show", "Show the approval list of a document, in its order", approverShow},
    {"approvers add",
     "Put a user into the approval list of a document: behind the last, or before another",
     approverAdd},
    {"approvers remove", "Take a user out of the approval list of a document", approverRemove},
    {"approvers move", "Have an approver asked before another", approverMove},
    {"actions", "List what somebody has been asked to do", actionList,
     "Reference is the document or the revision that an action is about.\n'kvvesk action' "
     "completes and closes actions."},
    {"action", "Complete or close an action of your own", nullptr,
     "Administrators may settle the actions of others too."},
    {"action complete", "Record that an action is completed", actionComplete},
    {"action close", "Record that an action is closed", actionClose,
     "An action that has not been completed counts as completed on that day."},
    {"queries",
     "Show, add, change or delete the saved queries that documents, manuals and users are listed "
     "by"},
    {"queries list", "List all saved queries with their conditions", queryList},
    {"queries show", "Show all saved queries, or one, with their conditions", queryShow},
    {"queries add", "Save a new query", queryAdd},
    {"queries set", "Save a query, whether there is one of that name or not", querySet},
    {"queries edit", "Change the name or criteria of a saved query", queryEdit},
    {"queries delete", "Delete a saved query", queryDelete},
    {"users", "List users, all or those of a saved query", userList,
     "Columns: ID, UserID, UserName, Alias, Title, Email, User00 to User11.\nPasswords are kept as "
     "hashes and are listed for nobody."},
    {"user", "Show, add, change or delete one user"},
    {"user show", "Show all fields of a user, and the workgroup", userShow},
    {"user add", "Add a user", userAdd,
     "The new user's password comes from KVVESK_NEW_PASSWORD or is asked for.\nA user is in the "
     "workgroup 0, View Only Users, unless --workgroup says otherwise.\nThe user's ID is printed; "
     "where a user is to be given, it is that or the name."},
    {"user edit", "Change fields of a user", userEdit,
     "Fields that are not given stay as they are; an empty text empties a field.\nAdministrators, "
     "and only they, make and unmake administrators, themselves too; the last one stays."},
    {"user passwd", kPasswordHelp, userPassword},
    {"user delete", "Delete a user with ownerships, places in approval lists and copies",
     userDelete,
     "Actions and the approvals of revisions keep the user's ID. What a deleted user has to "
     "approve\nothers can decide about with 'kvvesk revision approve --for ID'.\nWhere registers "
     "share their users, the user is gone from all of them."},
    {"workgroups", "List the workgroups, or who is in one of them", workgroupList,
     "Who is in -1, Super Users, is an administrator; 0, View Only Users, is where new users "
     "are.\nEvery register has these two. 'kvvesk user edit --workgroup' puts a user into one."},
    {"rights", "Show or change rights and options"},
    {"rights show", "Show what a user may do, what owners may do, and the options in force",
     rightsShow},
    {"rights edit", "Change rights and options", rightsEdit,
     "NUMBERS are those that 'kvvesk rights show' lists: 2, or 1,30,90-96.\nA user whose rights "
     "are changed for the first time begins with those of the workgroup."},
    {"passwd", kPasswordHelp, userPassword},
    {"keywords", "List, add or delete the values that validated fields may have"},
    {"keywords show", "List the keywords of one field, or of all", keywordShow},
    {"keywords add", "Add a keyword to a field", keywordAdd},
    {"keywords delete", "Delete a keyword; records that have it keep it", keywordDelete},
    {"labels", "Show or change what the register calls its fields"},
    {"labels show", "List the fields and their labels", labelShow,
     "Type is told of the fields User00 to User11, whose type each register chooses."},
    {"labels set", "Give a field another label", labelSet},
    {"config", "Show configuration values, or set one", registerConfig},
    {"import",
     "Fill a register from a folder of CSV files, all of it or nothing; for administrators",
     registerImport},
    {"export",
     "Write a register as a folder of CSV files that can be imported, all of it or nothing; for "
     "administrators",
     registerExport,
     "What was written is imported and compared before it is kept. What the files cannot carry, "
     "such as\npasswords, rights, saved queries and labels, is listed."},
    {"copy",
     "Copy a register to a new place: from a file to a server, back, or to another file; all of "
     "it or nothing; for administrators",
     registerCopy},
    {"sql", "Run a statement of the register's SQL dialect; for administrators", registerSql},
    {"completion", "Print what completes kvvesk in a shell", programCompletion,
     "To have it in this shell:\n"
     "  bash, zsh:   source <(kvvesk completion bash)\n"
     "  fish:        kvvesk completion fish | source\n"
     "  PowerShell:  kvvesk completion powershell | Out-String | Invoke-Expression\n"
     "Where kvvesk was installed with 'cmake --install', bash, zsh and fish find it by "
     "themselves."},
    {"manpage", "Print the manual page, or that of one command", programManualPage},
});

}  // namespace

std::span<const Verb> verbs() noexcept { return kVerbs; }

}  // namespace kv::cli
