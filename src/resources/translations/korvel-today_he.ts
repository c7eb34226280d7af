<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="he">
<context>
    <name></name>
    <message id="WelcomeWhat">
        <source></source>
        <translation>מציג את מה שמתוכנן בתוכנת כספים: תשלומים והכנסות באיחור, להיום ולימים הקרובים.</translation>
    </message>
    <message id="WelcomeFolder">
        <source></source>
        <translation>הרשימה תופיע ברגע שהתוכנה תשמור אותה בתיקייה זו:</translation>
    </message>
    <message id="WelcomeDocumentation">
        <source></source>
        <translation>התיעוד של Korvel Today מתאר כיצד תוכנה מתחברת.</translation>
    </message>
    <message id="WelcomeFound">
        <source></source>
        <translation>בחר קובץ כדי לראות מה מתוכנן בו:</translation>
    </message>
    <message id="WelcomeOnlyRead">
        <source></source>
        <translation>הקובץ רק נקרא ולעולם אינו משתנה.</translation>
    </message>
    <message id="WelcomeReading">
        <source></source>
        <translation>הקובץ נקרא כעת…</translation>
    </message>
    <message id="WelcomeShowFile">
        <source></source>
        <translation>הצג את %1, %2</translation>
    </message>
    <message id="TodayViewEmtyText">
        <source></source>
        <translation>אין תשלומים קרובים</translation>
    </message>
    <message id="ShowAllTitle">
        <source></source>
        <translation>הצג הכול…</translation>
    </message>
    <message id="ResheduleTomorrow">
        <source></source>
        <translation>מחר</translation>
    </message>
    <message id="Reshedule3Days">
        <source></source>
        <translation>בעוד 3 ימים</translation>
    </message>
    <message id="ResheduleNextWeek">
        <source></source>
        <translation>בשבוע הבא</translation>
    </message>
    <message id="DeleteFutureEnteres">
        <source></source>
        <translation>רשומה זו וכל הבאות</translation>
    </message>
    <message id="DeleteCurrentPlanButtonTitle">
        <source></source>
        <translation>רשומה זו בלבד</translation>
    </message>
    <message id="CancelButtonTitle">
        <source></source>
        <translation>ביטול</translation>
    </message>
    <message id="FailureTitle">
        <source></source>
        <translation>לא ניתן היה לטעון את הרשימה</translation>
    </message>
    <message id="FailureText">
        <source></source>
        <translation>הנתונים שלך לא נפגעו. Korvel Today ינסה שוב מעצמו, וגם ברגע שמשהו ישתנה בתיקייה המשותפת.</translation>
    </message>
    <message id="FailureTryAgain">
        <source></source>
        <translation>ניסיון נוסף</translation>
    </message>
    <message id="FailureExplain">
        <source></source>
        <translation>מה לא תקין?</translation>
    </message>
    <message id="PaidButtonHelp">
        <source></source>
        <translation>סמן כשולם</translation>
    </message>
    <message id="LaterButtonHelp">
        <source></source>
        <translation>דחה</translation>
    </message>
    <message id="InfoButtonHelp">
        <source></source>
        <translation>פתח</translation>
    </message>
    <message id="DeleteButtonHelp">
        <source></source>
        <translation>מחק</translation>
    </message>
    <message id="AddButtonHelp">
        <source></source>
        <translation>הוסף תנועה</translation>
    </message>
    <message id="OverdueDescription">
        <source></source>
        <translation>באיחור</translation>
    </message>
    <message id="OpenRowDescription">
        <source></source>
        <translation>הפעולות מוצגות</translation>
    </message>
    <message id="OverdueCountText">
        <source></source>
        <translation>באיחור: %L1</translation>
    </message>
    <message id="DueTodayCountText">
        <source></source>
        <translation>להיום: %L1</translation>
    </message>
    <message id="BothCountsText">
        <source></source>
        <translation>%1, %2</translation>
    </message>
    <message id="NothingIsDueText">
        <source></source>
        <translation>אין תשלומים שמועדם הגיע</translation>
    </message>
    <message id="TrayShowTitle">
        <source></source>
        <translation>הצג</translation>
    </message>
    <message id="TrayAddTitle">
        <source></source>
        <translation>הוסף תנועה</translation>
    </message>
    <message id="TrayOpenApplicationTitle">
        <source></source>
        <translation>פתח את יישום הכספים</translation>
    </message>
    <message id="TrayShowFolderTitle">
        <source></source>
        <translation>הצג את התיקייה המשותפת</translation>
    </message>
    <message id="TrayQuitTitle">
        <source></source>
        <translation>יציאה</translation>
    </message>
    <message id="NotificationOpenTitle">
        <source></source>
        <translation>פתח</translation>
    </message>
    <message id="NotificationNotTodayTitle">
        <source></source>
        <translation>לא היום</translation>
    </message>
</context>
</TS>
