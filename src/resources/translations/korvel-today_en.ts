<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="WelcomeWhat">
        <source></source>
        <translation>Shows what a finance program has planned: payments and income that are overdue, due today or due in the coming days.</translation>
    </message>
    <message id="WelcomeFolder">
        <source></source>
        <translation>The list appears as soon as the program keeps it in this folder:</translation>
    </message>
    <message id="WelcomeDocumentation">
        <source></source>
        <translation>The documentation of Korvel Today describes how a program connects.</translation>
    </message>
    <message id="WelcomeFound">
        <source></source>
        <translation>Choose a file to see what is planned in it:</translation>
    </message>
    <message id="WelcomeOnlyRead">
        <source></source>
        <translation>The file is only read, never changed.</translation>
    </message>
    <message id="WelcomeReading">
        <source></source>
        <translation>Reading the file…</translation>
    </message>
    <message id="WelcomeShowFile">
        <source></source>
        <translation>Show %1, %2</translation>
    </message>
    <message id="TodayViewEmtyText">
        <source></source>
        <translation>Nothing due</translation>
    </message>
    <message id="ShowAllTitle">
        <source></source>
        <translation>Show all…</translation>
    </message>
    <message id="ResheduleTomorrow">
        <source></source>
        <translation>Tomorrow</translation>
    </message>
    <message id="Reshedule3Days">
        <source></source>
        <translation>In 3 days</translation>
    </message>
    <message id="ResheduleNextWeek">
        <source></source>
        <translation>Next week</translation>
    </message>
    <message id="DeleteFutureEnteres">
        <source></source>
        <translation>This and all future entries</translation>
    </message>
    <message id="DeleteCurrentPlanButtonTitle">
        <source></source>
        <translation>This entry only</translation>
    </message>
    <message id="CancelButtonTitle">
        <source></source>
        <translation>Cancel</translation>
    </message>
    <message id="FailureTitle">
        <source></source>
        <translation>The list could not be loaded</translation>
    </message>
    <message id="FailureText">
        <source></source>
        <translation>Your data is untouched. Korvel Today tries again by itself, and as soon as something changes in the shared folder.</translation>
    </message>
    <message id="FailureTryAgain">
        <source></source>
        <translation>Try again</translation>
    </message>
    <message id="FailureExplain">
        <source></source>
        <translation>What is wrong?</translation>
    </message>
    <message id="PaidButtonHelp">
        <source></source>
        <translation>Mark as paid</translation>
    </message>
    <message id="LaterButtonHelp">
        <source></source>
        <translation>Postpone</translation>
    </message>
    <message id="InfoButtonHelp">
        <source></source>
        <translation>Open</translation>
    </message>
    <message id="DeleteButtonHelp">
        <source></source>
        <translation>Delete</translation>
    </message>
    <message id="AddButtonHelp">
        <source></source>
        <translation>Add a transaction</translation>
    </message>
    <message id="OverdueDescription">
        <source></source>
        <translation>overdue</translation>
    </message>
    <message id="OpenRowDescription">
        <source></source>
        <translation>actions shown</translation>
    </message>
    <message id="OverdueCountText">
        <source></source>
        <translation>%L1 overdue</translation>
    </message>
    <message id="DueTodayCountText">
        <source></source>
        <translation>%L1 due today</translation>
    </message>
    <message id="BothCountsText">
        <source></source>
        <translation>%1, %2</translation>
    </message>
    <message id="NothingIsDueText">
        <source></source>
        <translation>Nothing is due</translation>
    </message>
    <message id="TrayShowTitle">
        <source></source>
        <translation>Show</translation>
    </message>
    <message id="TrayAddTitle">
        <source></source>
        <translation>Add a transaction</translation>
    </message>
    <message id="TrayOpenApplicationTitle">
        <source></source>
        <translation>Open the finance application</translation>
    </message>
    <message id="TrayShowFolderTitle">
        <source></source>
        <translation>Show the shared folder</translation>
    </message>
    <message id="TrayQuitTitle">
        <source></source>
        <translation>Quit</translation>
    </message>
    <message id="NotificationOpenTitle">
        <source></source>
        <translation>Open</translation>
    </message>
    <message id="NotificationNotTodayTitle">
        <source></source>
        <translation>Not today</translation>
    </message>
</context>
</TS>
