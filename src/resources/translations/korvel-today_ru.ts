<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru">
<context>
    <name></name>
    <message id="WelcomeWhat">
        <source></source>
        <translation>Показывает, что запланировано в финансовой программе: просроченные, сегодняшние и ближайшие платежи и поступления.</translation>
    </message>
    <message id="WelcomeFolder">
        <source></source>
        <translation>Список появится, как только программа сохранит его в этой папке:</translation>
    </message>
    <message id="WelcomeDocumentation">
        <source></source>
        <translation>Как подключается программа, описано в документации Korvel Today.</translation>
    </message>
    <message id="WelcomeFound">
        <source></source>
        <translation>Выберите файл, чтобы увидеть запланированное:</translation>
    </message>
    <message id="WelcomeOnlyRead">
        <source></source>
        <translation>Файл только читается и никогда не изменяется.</translation>
    </message>
    <message id="WelcomeReading">
        <source></source>
        <translation>Чтение файла…</translation>
    </message>
    <message id="WelcomeShowFile">
        <source></source>
        <translation>Показать %1, %2</translation>
    </message>
    <message id="TodayViewEmtyText">
        <source></source>
        <translation>Нет предстоящих платежей</translation>
    </message>
    <message id="ShowAllTitle">
        <source></source>
        <translation>Показать все…</translation>
    </message>
    <message id="ResheduleTomorrow">
        <source></source>
        <translation>Завтра</translation>
    </message>
    <message id="Reshedule3Days">
        <source></source>
        <translation>Через 3 дня</translation>
    </message>
    <message id="ResheduleNextWeek">
        <source></source>
        <translation>На следующей неделе</translation>
    </message>
    <message id="DeleteFutureEnteres">
        <source></source>
        <translation>Эту и все будущие записи</translation>
    </message>
    <message id="DeleteCurrentPlanButtonTitle">
        <source></source>
        <translation>Только эту запись</translation>
    </message>
    <message id="CancelButtonTitle">
        <source></source>
        <translation>Отмена</translation>
    </message>
    <message id="FailureTitle">
        <source></source>
        <translation>Не удалось загрузить список</translation>
    </message>
    <message id="FailureText">
        <source></source>
        <translation>Ваши данные не тронуты. Korvel Today попробует снова само, а также как только в общей папке что-то изменится.</translation>
    </message>
    <message id="FailureTryAgain">
        <source></source>
        <translation>Повторить</translation>
    </message>
    <message id="FailureExplain">
        <source></source>
        <translation>Что не так?</translation>
    </message>
    <message id="PaidButtonHelp">
        <source></source>
        <translation>Отметить как оплаченное</translation>
    </message>
    <message id="LaterButtonHelp">
        <source></source>
        <translation>Отложить</translation>
    </message>
    <message id="InfoButtonHelp">
        <source></source>
        <translation>Открыть</translation>
    </message>
    <message id="DeleteButtonHelp">
        <source></source>
        <translation>Удалить</translation>
    </message>
    <message id="AddButtonHelp">
        <source></source>
        <translation>Добавить операцию</translation>
    </message>
    <message id="OverdueDescription">
        <source></source>
        <translation>просрочено</translation>
    </message>
    <message id="OpenRowDescription">
        <source></source>
        <translation>действия показаны</translation>
    </message>
    <message id="OverdueCountText">
        <source></source>
        <translation>просрочено: %L1</translation>
    </message>
    <message id="DueTodayCountText">
        <source></source>
        <translation>на сегодня: %L1</translation>
    </message>
    <message id="BothCountsText">
        <source></source>
        <translation>%1, %2</translation>
    </message>
    <message id="NothingIsDueText">
        <source></source>
        <translation>Ничего не нужно оплачивать</translation>
    </message>
    <message id="TrayShowTitle">
        <source></source>
        <translation>Показать</translation>
    </message>
    <message id="TrayAddTitle">
        <source></source>
        <translation>Добавить операцию</translation>
    </message>
    <message id="TrayOpenApplicationTitle">
        <source></source>
        <translation>Открыть финансовое приложение</translation>
    </message>
    <message id="TrayShowFolderTitle">
        <source></source>
        <translation>Показать общую папку</translation>
    </message>
    <message id="TrayQuitTitle">
        <source></source>
        <translation>Завершить</translation>
    </message>
    <message id="NotificationOpenTitle">
        <source></source>
        <translation>Открыть</translation>
    </message>
    <message id="NotificationNotTodayTitle">
        <source></source>
        <translation>Не сегодня</translation>
    </message>
</context>
</TS>
